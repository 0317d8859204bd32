// An advisory lock on the directory: it needs no file of its own and goes with the process.
#include "sqlite/DirectoryLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace quillmere {

DirectoryLock::DirectoryLock(const std::filesystem::path& directory)
    : descriptor_(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (descriptor_ < 0) return;
  for (int attempt = 0; attempt < 100; ++attempt) {
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

DirectoryLock::~DirectoryLock() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

}  // namespace quillmere
