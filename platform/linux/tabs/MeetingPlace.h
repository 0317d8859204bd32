// Where the mixer and the browsers' host programs meet: a socket that nobody but one user's processes reaches.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quillmere::tabs {

/// XDG_RUNTIME_DIR; empty where there is none. [any]
[[nodiscard]] std::string sessionRuntimeFolder();
/// The folder of the socket, below a runtime folder. [any]
[[nodiscard]] std::string meetingFolder(const std::string& runtimeFolder);
/// The socket's name in it.
inline constexpr const char* socketName = "tabs";

/// Listens at `folder`/`name`; the folder is made if it is missing and closed to others if it is open to them. What is
/// there under that name, as after a crash, is replaced in one step, so that whoever waits for the name to appear can
/// connect at once. -1, and the reason in `problem`, where that is impossible. [any]
[[nodiscard]] int listenPrivately(const std::string& folder, const std::string& name, std::string& problem);

/// Connects to it without waiting; -1 and errno where that fails, EAGAIN where too many wait to be let in. [any]
[[nodiscard]] int connectTo(const std::string& path);

struct Peer {
  std::int32_t pid = 0;
  std::uint32_t userID = 0;
};
/// Whose process is at the other end of a connected socket, in the kernel's word. [any]
[[nodiscard]] std::optional<Peer> peerOf(int socket);

}  // namespace quillmere::tabs
