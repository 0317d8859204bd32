// Whether a window that was asked for while it was there can be seen, as far as the desktop tells.
#pragma once

class QWindow;

namespace quillmere {

/// A moment after the desktop was asked to bring the window to the front, without a token as a reason for it.
struct SightFacts {
  /// The window has the keyboard. The toolkit may not have noticed that it was taken away.
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

enum class Sight {
  seen,     ///< Or it may be, in part or beside another window: it is left to the desktop.
  unseen,   ///< It is somewhere else.
  doubtful  ///< What is told doesn't fit together: unseen, should it stay so.
};

[[nodiscard]] Sight sightFrom(const SightFacts& facts);

/// The same of what the desktop says now. [main]
[[nodiscard]] Sight sightOf(QWindow& window);

}  // namespace quillmere
