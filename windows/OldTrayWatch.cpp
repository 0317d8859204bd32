// The owner of a selection, and the message that announces it.
#include "windows/OldTrayWatch.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>

namespace quillmere {

namespace {

xcb_connection_t* x11Connection() {
  const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return application != nullptr ? application->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
  const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
  if (!reply) return XCB_ATOM_NONE;
  return reply->atom;
}

}  // namespace

OldTrayWatch::OldTrayWatch() = default;

OldTrayWatch::~OldTrayWatch() { qGuiApp->removeNativeEventFilter(this); }

void OldTrayWatch::start() {
  look();
  if (isAvailable_) return;
  qGuiApp->installNativeEventFilter(this);
}

bool OldTrayWatch::isPossible() { return x11Connection() != nullptr; }

bool OldTrayWatch::isThere() const {
  auto* connection = x11Connection();
  if (connection == nullptr) return false;
  const auto selection = atom(connection, "_NET_SYSTEM_TRAY_S0");
  const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> reply(
      xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr), &std::free);
  return reply && reply->owner != XCB_WINDOW_NONE;
}

void OldTrayWatch::look() {
  if (isAvailable_ || !isThere()) return;
  isAvailable_ = true;
  qGuiApp->removeNativeEventFilter(this);
  Q_EMIT available();
}

bool OldTrayWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
  // A tray announces itself to the root window with MANAGER; anything else is not ours.
  static const xcb_atom_t manager = atom(x11Connection(), "MANAGER");
  if (reinterpret_cast<const xcb_client_message_event_t*>(event)->type == manager) {
    QMetaObject::invokeMethod(this, &OldTrayWatch::look, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace quillmere
