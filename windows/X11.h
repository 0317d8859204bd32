// What the toolkit does not say to an X server for us.
#pragma once

#include <xcb/xcb.h>

#include <string>

class QWindow;

namespace quillmere::x11 {

/// The toolkit's connection; null on another kind of display. [main]
[[nodiscard]] xcb_connection_t* connection();
/// XCB_ATOM_NONE if the server gives none.
[[nodiscard]] xcb_atom_t atom(const char* name);
/// What the window manager calls itself; empty where there is none, or no X server.
[[nodiscard]] std::string windowManager();
/// Whether the X server is that of a wlroots compositor, whose window manager says little and arranges what it manages.
[[nodiscard]] bool isOfWlroots();
/// Whether that is GNOME's, on an X server of its own or in a Wayland session. It gives the keyboard to no background.
[[nodiscard]] bool isOfGnome();
/// Whether the window is the active one by the window manager's word. The toolkit doesn't notice where the keyboard is
/// taken from it and given to nobody.
[[nodiscard]] bool isActive(QWindow& window);
/// Whether the window is on another desktop than the one that is shown; false where nobody says so.
[[nodiscard]] bool isOnAnotherDesktop(QWindow& window);
/// Puts a window that is not shown yet below all others, as the desktop's own.
void lieOnDesktop(QWindow& window);
/// Keeps a window out of task bars and pagers. Before each show: window managers forget it with the window's hiding.
void skipTaskBar(QWindow& window);

}  // namespace quillmere::x11
