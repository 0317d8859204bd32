// The release feed over the system's own loading of addresses.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/ReleaseFeed.h"

namespace quillmere {

struct MacReleaseFeedOptions {
  /// An address that begins with "https:".
  std::string address;
  double seconds = 20;
  /// What is longer is no feed.
  std::size_t maxBytes = std::size_t{256} * 1024;
};

/// [main]
class MacReleaseFeed final : public ReleaseFeed {
 public:
  explicit MacReleaseFeed(MacReleaseFeedOptions options);
  ~MacReleaseFeed() override;
  MacReleaseFeed(const MacReleaseFeed&) = delete;
  MacReleaseFeed& operator=(const MacReleaseFeed&) = delete;

  void fetch(Reply reply) override;

 private:
  struct Fetch;
  MacReleaseFeedOptions options_;
  std::shared_ptr<Fetch> fetch_;
};

}  // namespace quillmere
