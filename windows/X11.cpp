// Atoms and window states.
#include "windows/X11.h"

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace quillmere::x11 {

xcb_connection_t* connection() {
  const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return application != nullptr ? application->connection() : nullptr;
}

xcb_atom_t atom(const char* name) {
  auto* server = connection();
  const auto cookie = xcb_intern_atom(server, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(server, cookie, nullptr), &std::free);
  if (!reply) return XCB_ATOM_NONE;
  return reply->atom;
}

void skipTaskBar(QWindow& window) {
  if (connection() == nullptr) return;
  static const std::array<xcb_atom_t, 2> states{atom("_NET_WM_STATE_SKIP_TASKBAR"), atom("_NET_WM_STATE_SKIP_PAGER")};
  static const xcb_atom_t property = atom("_NET_WM_STATE");
  window.create();
  // The toolkit adds its own states to these when it shows the window.
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), property,
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(states.size()), states.data());
}

}  // namespace quillmere::x11
