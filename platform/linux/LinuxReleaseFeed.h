// The release feed, fetched by a small program of its own that ends with its answer: what speaks TLS is in memory for a
// second a day, and reads what strangers send outside of this process.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/ReleaseFeed.h"
#include "runtime/Executor.h"

namespace quillmere {

class HostLoop;

struct LinuxReleaseFeedOptions {
  /// The program that writes the feed to its standard output, and its arguments; the first is the program's path.
  std::vector<std::string> command;
  /// A program that has not ended by then is ended.
  std::chrono::milliseconds patience = std::chrono::seconds(40);
  /// What is longer is no feed.
  std::size_t maxBytes = std::size_t{256} * 1024;
};

/// [main]
class LinuxReleaseFeed final : public ReleaseFeed {
 public:
  LinuxReleaseFeed(Executor& main, LinuxReleaseFeedOptions options);
  /// Ends a program that still runs, and waits for that.
  ~LinuxReleaseFeed() override;
  LinuxReleaseFeed(const LinuxReleaseFeed&) = delete;
  LinuxReleaseFeed& operator=(const LinuxReleaseFeed&) = delete;

  void fetch(Reply reply) override;

 private:
  class Fetch;
  void finish(const Answer& answer);

  Executor& main_;
  LinuxReleaseFeedOptions options_;
  std::vector<Reply> waiting_;
  std::shared_ptr<LinuxReleaseFeed*> self_;
  const std::shared_ptr<HostLoop> loop_;
  /// [host]
  std::unique_ptr<Fetch> fetch_;
};

}  // namespace quillmere
