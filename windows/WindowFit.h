// No window is larger than its screen: the size it is made for, and the least size it asks for, hold where there is
// room.
#pragma once

#include <QMargins>
#include <QSize>

class QWindow;

namespace quillmere {

struct WindowSizes {
  QSize size;
  QSize minimum;

  friend bool operator==(const WindowSizes&, const WindowSizes&) = default;
};

/// What is left of `wanted` on a screen that has `available` pixels for windows, `frame` of which go to the window's
/// frame. All in device-independent pixels.
[[nodiscard]] WindowSizes fittingSizes(const WindowSizes& wanted, QSize available, const QMargins& frame);

/// Holds the window to that, now and whenever it comes to another screen, or its screen, panels or frame change. Its
/// minimum and its size are what is wanted; they are read now. [main]
void keepOnScreen(QWindow& window);

}  // namespace quillmere
