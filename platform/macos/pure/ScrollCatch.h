// Who takes a scroll that the program's event loop has seen: the order of the questions.
#pragma once

#include <functional>

namespace quillmere::macos {

/// What listens to scrolls, for one window. [main]
struct ScrollCatch {
  /// The window that it is in, as the system names it; null while it is in none.
  std::function<const void*()> window;
  /// Whether the pointer is where a scroll is for it.
  std::function<bool()> isActive;
  /// Takes the distance, upwards positive; whether it has used it.
  std::function<bool(double delta)> onScroll;
};

/// Whether the event has been used up, and is not for anybody else. `eventWindow` is null for an event of no window.
/// [main]
[[nodiscard]] bool takesScroll(const ScrollCatch& listener, const void* eventWindow, double delta);

}  // namespace quillmere::macos
