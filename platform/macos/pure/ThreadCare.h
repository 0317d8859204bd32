// What the system is told of each of the program's threads.
#pragma once

#include <string>
#include <string_view>

namespace quillmere::macos {

/// What the system is to make of a thread's work.
enum class Urgency {
  usual,
  /// Somebody moves something and hears, or sees, what comes of it.
  interactive,
};

/// Of the thread of that name. [any]
[[nodiscard]] Urgency urgencyOf(std::string_view name);

/// As much of a name as the system keeps; it takes none that is longer. [any]
[[nodiscard]] std::string keptName(const std::string& name);

}  // namespace quillmere::macos
