// Atoms and window states.
#include "windows/X11.h"

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

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

/// A property that is one number.
std::optional<std::uint32_t> number(xcb_window_t window, const char* name, xcb_atom_t type) {
  const auto told = property(window, atom(name), type);
  std::uint32_t value = 0;
  if (told.size() != sizeof(value)) return std::nullopt;
  std::memcpy(&value, told.data(), sizeof(value));
  return value;
}

xcb_window_t root() { return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root; }

}  // namespace

std::string windowManager() {
  if (connection() == nullptr) return {};
  const auto manager = number(root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW);
  return manager ? property(*manager, atom("_NET_WM_NAME"), atom("UTF8_STRING")) : std::string();
}

bool isOfWlroots() { return windowManager() == "wlroots wm"; }

bool isOfGnome() { return windowManager() == "GNOME Shell"; }

bool isActive(QWindow& window) {
  if (connection() == nullptr || window.handle() == nullptr) return false;
  const auto active = number(root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
  return active ? *active == static_cast<xcb_window_t>(window.winId()) : window.isActive();
}

bool isOnAnotherDesktop(QWindow& window) {
  if (connection() == nullptr || window.handle() == nullptr) return false;
  constexpr std::uint32_t everywhere = 0xFFFFFFFF;
  const auto shown = number(root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL);
  const auto own = number(static_cast<xcb_window_t>(window.winId()), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL);
  return shown && own && *own != *shown && *own != everywhere;
}

void lieOnDesktop(QWindow& window) {
  if (connection() == nullptr) return;
  window.create();
  const auto type = atom("_NET_WM_WINDOW_TYPE_DESKTOP");
  xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
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
