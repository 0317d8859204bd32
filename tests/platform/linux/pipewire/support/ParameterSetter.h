// Another client that sets parameters of nodes, as session managers do.
#pragma once

#include <cstdint>
#include <memory>

namespace quillmere::test {

class ParameterSetter {
 public:
  /// Connects, and binds the node of this global id.
  explicit ParameterSetter(std::uint32_t node);
  ~ParameterSetter();
  ParameterSetter(const ParameterSetter&) = delete;
  ParameterSetter& operator=(const ParameterSetter&) = delete;

  /// Sets one; true once the daemon takes the next thing from this client, false if it doesn't within two seconds.
  [[nodiscard]] bool isAnswered();

 private:
  struct Client;
  std::unique_ptr<Client> client_;
};

}  // namespace quillmere::test
