// What /proc tells of one process.
// Processes vanish while they are read: every field may be missing. Keeps nothing: [any].
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmere::applications {

struct ProcessFacts {
  /// The file that runs; empty where it cannot be read.
  std::string executable;
  std::vector<std::string> words;
  /// The kernel's name of the process, at most 15 bytes.
  std::string shortName;
  /// Text of the cgroup file.
  std::string cgroup;
  /// Application id of the Flatpak sandbox that it lives in, if any.
  std::string flatpakID;
};

class ProcessReader {
 public:
  struct Listed {
    std::int32_t pid;
    /// Changes when the number is given to another process.
    std::uint64_t inode;
  };

  /// `procRoot` stands in for /proc in tests. `userID`: whose processes count.
  ProcessReader(std::string procRoot, std::uint32_t userID);

  /// All processes of the machine, by one directory read. [any]
  [[nodiscard]] std::vector<Listed> list() const;
  /// A text that is another one after a process has come or gone, whatever else has happened; empty where there is
  /// none. Much cheaper than the list. [any]
  [[nodiscard]] std::string sign() const;
  /// Absent if there is no such process, it is another user's, or it has no executable (a kernel thread). [any]
  [[nodiscard]] std::optional<ProcessFacts> read(std::int32_t pid) const;
  /// The executable alone: cheap, to see whether a process has become another program. [any]
  [[nodiscard]] std::string executableOf(std::int32_t pid) const;

 private:
  std::string procRoot_;
  std::uint32_t userID_;
};

/// The words in the text of /proc/PID/cmdline; none where a program has written its whole command line into one word.
[[nodiscard]] std::vector<std::string> wordsOfCommandLine(std::string_view text);

/// The name in the [Application] group of a .flatpak-info file; empty if there is none.
[[nodiscard]] std::string flatpakIDOfInfo(std::string_view text);

}  // namespace quillmere::applications
