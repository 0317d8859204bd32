// The owner of a selection, and the message that announces it.
#include "windows/OldTrayWatch.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

#include "windows/X11.h"

namespace quillmere {

OldTrayWatch::OldTrayWatch() = default;

OldTrayWatch::~OldTrayWatch() { qGuiApp->removeNativeEventFilter(this); }

void OldTrayWatch::start() {
  look();
  if (isAvailable_) return;
  qGuiApp->installNativeEventFilter(this);
}

bool OldTrayWatch::isPossible() { return x11::connection() != nullptr; }

bool OldTrayWatch::isThere() const {
  auto* connection = x11::connection();
  if (connection == nullptr) return false;
  const auto selection = x11::atom("_NET_SYSTEM_TRAY_S0");
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
  static const xcb_atom_t manager = x11::atom("MANAGER");
  if (reinterpret_cast<const xcb_client_message_event_t*>(event)->type == manager) {
    QMetaObject::invokeMethod(this, &OldTrayWatch::look, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace quillmere
