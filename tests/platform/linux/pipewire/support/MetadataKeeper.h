// A client that keeps the graph's default metadata, as a session manager does; for a graph without one.
#pragma once

#include <memory>
#include <string>

namespace quillmere::test {

class MetadataKeeper {
 public:
  /// Connects by this name and tells `sink` as the default output; throws where no daemon lets it in.
  MetadataKeeper(const std::string& name, const std::string& sink);
  ~MetadataKeeper();
  MetadataKeeper(const MetadataKeeper&) = delete;
  MetadataKeeper& operator=(const MetadataKeeper&) = delete;

 private:
  struct Client;
  std::unique_ptr<Client> client_;
};

}  // namespace quillmere::test
