// What the program was asked for when it was started.
#pragma once

#include <iosfwd>
#include <optional>

namespace quillmere {

struct LaunchOptions {
  /// Into the tray, without a window.
  bool inBackground = false;
};

/// Absent where there is nothing to start: `exitCode` then says how to end, and the answer stands in `out`, or what was
/// wrong in `problems`.
[[nodiscard]] std::optional<LaunchOptions> parseArguments(int argc, char** argv, std::ostream& out,
                                                          std::ostream& problems, int& exitCode);

}  // namespace quillmere
