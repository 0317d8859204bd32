// Folders, modes and names.
#include "tabs/MeetingPlace.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace quillmere::tabs {

namespace {

constexpr int waitingConnections = 32;

bool fill(sockaddr_un& address, const std::string& path) {
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    return false;
  }
  path.copy(address.sun_path, path.size());
  return true;
}

std::string saying(const std::string& what) { return what + ": " + std::strerror(errno); }

/// The folder is there, is one, is this user's, and is open to nobody else.
bool closeFolder(const std::string& folder, std::string& problem) {
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    problem = saying(folder);
    return false;
  }
  struct stat facts{};
  if (::lstat(folder.c_str(), &facts) != 0) {
    problem = saying(folder);
    return false;
  }
  if (!S_ISDIR(facts.st_mode) || facts.st_uid != ::geteuid()) {
    problem = folder + " is no folder of this user's";
    return false;
  }
  if ((facts.st_mode & 07777U) != S_IRWXU && ::chmod(folder.c_str(), S_IRWXU) != 0) {
    problem = saying(folder);
    return false;
  }
  return true;
}

}  // namespace

std::string sessionRuntimeFolder() {
  const auto* folder = std::getenv("XDG_RUNTIME_DIR");
  return folder != nullptr && *folder == '/' ? folder : "";
}

std::string meetingFolder(const std::string& runtimeFolder) { return runtimeFolder + "/quillmere"; }

int listenPrivately(const std::string& folder, const std::string& name, std::string& problem) {
  if (!closeFolder(folder, problem)) return -1;
  const auto path = folder + '/' + name;
  const auto unready = path + '.' + std::to_string(::getpid());
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path || !fill(address, unready)) {
    problem = path + " is too long for a socket's name";
    return -1;
  }
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket < 0) {
    problem = saying("no socket");
    return -1;
  }
  ::unlink(unready.c_str());
  if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      ::chmod(unready.c_str(), S_IRUSR | S_IWUSR) == 0 && ::listen(socket, waitingConnections) == 0 &&
      ::rename(unready.c_str(), path.c_str()) == 0) {
    return socket;
  }
  problem = saying(path);
  ::unlink(unready.c_str());
  ::close(socket);
  return -1;
}

int connectTo(const std::string& path) {
  sockaddr_un address{};
  if (!fill(address, path)) return -1;
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (socket < 0) return -1;
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  const int error = errno;
  ::close(socket);
  errno = error;
  return -1;
}

std::optional<Peer> peerOf(int socket) {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return std::nullopt;
  return Peer{credentials.pid, credentials.uid};
}

}  // namespace quillmere::tabs
