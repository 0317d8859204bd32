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
/// Keeps a window out of task bars and pagers. Before each show: window managers forget it with the window's hiding.
void skipTaskBar(QWindow& window);

}  // namespace quillmere::x11
