// The browsers that take the companion, and where each of them looks for the programs that it may start.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillmere::tabs {

struct Browser {
  std::string_view key;
  /// As people know it.
  std::string_view name;
  /// Words that start it, looked for in the folders of programs.
  std::span<const std::string_view> commands;
  /// The files that run then, without their folder.
  std::span<const std::string_view> programs;
  /// Folders of its settings below the user's configuration: the first is the usual one, the others are those of
  /// channels that are there only where they are used.
  std::span<const std::string_view> folders;
  /// Where the system's packages put manifests; empty where that is not documented.
  std::string_view systemFolder;
};

/// In the order in which they are shown. [any]
[[nodiscard]] std::span<const Browser> knownBrowsers();

/// The key of the browser that runs from this file; the file's own name for any other. [any]
[[nodiscard]] std::string keyOfProgram(const std::string& program);

}  // namespace quillmere::tabs
