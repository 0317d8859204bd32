// One file, looked at before it is read.
#include "applications/SmallFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace quillmere::applications {

namespace {

constexpr std::size_t maxFileBytes = std::size_t{1024} * 1024;

std::string contentsOf(int descriptor, std::string& problem) {
  std::string text;
  // One that grows while it is read has no size to go by.
  std::array<char, 16384> piece{};
  while (text.size() <= maxFileBytes) {
    const auto count = ::read(descriptor, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) problem = std::strerror(errno);
    if (count <= 0) return text;
    text.append(piece.data(), static_cast<std::size_t>(count));
  }
  problem = "too large";
  return text;
}

}  // namespace

std::optional<std::string> readSmallFile(const std::string& path, std::string& problem) {
  problem.clear();
  // A pipe would wait for somebody to write, a device might never end.
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    problem = std::strerror(errno);
    return std::nullopt;
  }
  struct stat facts{};
  std::string text;
  if (::fstat(descriptor, &facts) != 0) {
    problem = std::strerror(errno);
  } else if (!S_ISREG(facts.st_mode)) {
    problem = "no regular file";
  } else {
    text = contentsOf(descriptor, problem);
  }
  ::close(descriptor);
  if (!problem.empty()) return std::nullopt;
  return text;
}

}  // namespace quillmere::applications
