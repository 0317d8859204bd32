// Whether a window that was asked for while it was there can be seen, as far as the desktop tells.
#pragma once

class QWindow;

namespace quillmere {

/// A moment after the desktop was asked to bring the window to the front, without a token as a reason for it.
struct SightFacts {
  /// The window has the keyboard.
  bool isActive = false;
  /// The windows are drawn through an X server.
  bool isX11 = false;
  /// Wayland: the compositor asks for the window's pictures. It doesn't for one on another workspace or a minimised
  /// one.
  bool isExposed = true;
  /// X servers: the window manager tells that the window is on another desktop.
  bool isOnAnotherDesktop = false;
  /// X servers: nobody tells where a window is. So it is with wlroots' X server.
  bool isUntold = false;
};

/// Never for a window with the keyboard; one that is seen beside another, or may be, is left to the desktop too.
[[nodiscard]] bool isOutOfSight(const SightFacts& facts);

/// The same of what the desktop says now. [main]
[[nodiscard]] bool isWindowOutOfSight(QWindow& window);

}  // namespace quillmere
