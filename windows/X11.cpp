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

namespace {

/// A property's bytes, up to a size that is ample for what is asked here.
std::string property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type) {
  constexpr std::uint32_t mostWords = 64;
  const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
      xcb_get_property_reply(connection(), xcb_get_property(connection(), 0, window, name, type, 0, mostWords),
                             nullptr),
      &std::free);
  if (!reply || reply->type != type) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

}  // namespace

std::string windowManager() {
  if (connection() == nullptr) return {};
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
  const auto told = property(root, atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW);
  xcb_window_t manager = XCB_WINDOW_NONE;
  if (told.size() != sizeof(manager)) return {};
  std::memcpy(&manager, told.data(), sizeof(manager));
  return property(manager, atom("_NET_WM_NAME"), atom("UTF8_STRING"));
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
