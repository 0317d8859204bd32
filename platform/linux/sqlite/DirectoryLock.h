// Keeps two starting processes from repairing one settings file at the same time.
#pragma once

#include <filesystem>

namespace quillmere {

/// Held from construction to destruction, whatever happens to the process. After a second's wait for another holder it
/// goes without: a start must not hang on a process that does. [any]
class DirectoryLock {
 public:
  explicit DirectoryLock(const std::filesystem::path& directory);
  ~DirectoryLock();
  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;

 private:
  int descriptor_ = -1;
};

}  // namespace quillmere
