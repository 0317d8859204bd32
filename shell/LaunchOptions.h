// What the program was asked for when it was started.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

namespace quillmere {

struct LaunchOptions {
  /// Into the tray, without a window.
  bool inBackground = false;
  /// By the session bus, which tells at once what to show: a window opens when it does.
  bool isActivated = false;
  /// The section of the main window to show, by its name.
  std::optional<std::string> section;
};

/// Absent where there is nothing to start: `exitCode` then says how to end, and the answer stands in `out`, or what was
/// wrong in `problems`.
[[nodiscard]] std::optional<LaunchOptions> parseArguments(int argc, char** argv, std::ostream& out,
                                                          std::ostream& problems, int& exitCode);

}  // namespace quillmere
