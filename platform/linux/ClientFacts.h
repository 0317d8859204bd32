// What is known of a client of the audio daemon, and the rule that names the application behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace quillmere {

/// Texts are empty where nothing is known. All but `pid` with `pidIsTrusted` are the client's own word.
struct ClientFacts {
  /// Process id, 0 where unknown.
  std::int32_t pid = 0;
  /// True: the kernel vouches for `pid`; false: the client says so.
  bool pidIsTrusted = false;
  /// The application id a sandbox portal vouches for.
  std::string portalAppID;
  std::string applicationID;
  std::string applicationName;
  /// File name of the executable.
  std::string processBinary;
  /// "pipewire-pulse", "alsa", "jack", or empty for the daemon's own protocol.
  std::string clientAPI;
  /// Of the first stream of the client.
  std::string nodeName;
  std::string mediaRole;

  friend bool operator==(const ClientFacts&, const ClientFacts&) = default;
};

/// The identifier of the client's application; empty where it cannot tell. Called on [loop], must neither block for
/// long nor call back into the audio host.
using ApplicationIdentifier = std::function<std::string(const ClientFacts&)>;

/// Portal id, application id, binary, application name, node name: the first that is there. [any]
[[nodiscard]] std::string defaultApplicationIdentifier(const ClientFacts& facts);

/// The name people read: the application's own, or its binary's where that is missing or says nothing. [any]
[[nodiscard]] std::string clientDisplayName(const ClientFacts& facts);

}  // namespace quillmere
