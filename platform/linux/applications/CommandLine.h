// From a command line to the program that it really runs: through wrappers, interpreters and launchers.
// Both sides of the comparison between a process and a desktop entry's Exec key pass through here. Pure: [any].
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmere::applications {

struct Program {
  /// The executable or, for an interpreter, its script; as written, may be relative. Empty where unknown.
  std::string path;
  /// What people would call it: the file name of `path` without a script's extension.
  std::string name;
  /// Nothing but an interpreter or a launcher, which says nothing of the application.
  bool isAnonymous = false;

  friend bool operator==(const Program&, const Program&) = default;
};

/// The words of an Exec key, its field codes left out; empty if the key is broken.
[[nodiscard]] std::vector<std::string> wordsOfExec(const std::string& exec);

/// @param words       the command line; the first word is the program as it was called
/// @param executable  the file that runs, where it is known; otherwise the first word counts
[[nodiscard]] Program programOf(const std::vector<std::string>& words, std::string_view executable = {});

/// The Flatpak application that a command line starts; empty if none.
[[nodiscard]] std::string flatpakIDOf(const std::vector<std::string>& words);

/// python3.11, bash, java, electron and their like, given by file name.
[[nodiscard]] bool isInterpreter(std::string_view fileName);

[[nodiscard]] std::string_view fileNameOf(std::string_view path);

}  // namespace quillmere::applications
