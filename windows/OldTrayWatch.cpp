// Waits until the desktop offers a place for a status item.
#include "shell/TrayWatch.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>

namespace quillmere {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
/// A hung watcher must not hold up the start.
constexpr int busTimeoutMillis = 250;

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

TrayWatch::TrayWatch() = default;

TrayWatch::~TrayWatch() { qGuiApp->removeNativeEventFilter(this); }

void TrayWatch::start() {
  look();
  if (isAvailable_) return;
  qGuiApp->installNativeEventFilter(this);
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  busWatcher_ = new QDBusServiceWatcher(watcherService, bus, QDBusServiceWatcher::WatchForRegistration, this);
  connect(busWatcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::look);
  // A watcher may be there before the panel that shows the items.
  bus.connect(watcherService, QStringLiteral("/StatusNotifierWatcher"), watcherService,
              QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(look()));
}

bool TrayWatch::statusItemHostIsThere() const {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected() || !bus.interface()->isServiceRegistered(watcherService)) return false;
  auto call = QDBusMessage::createMethodCall(watcherService, QStringLiteral("/StatusNotifierWatcher"),
                                             QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  call << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
  const QDBusReply<QDBusVariant> reply = bus.call(call, QDBus::Block, busTimeoutMillis);
  return reply.isValid() && reply.value().variant().toBool();
}

bool TrayWatch::oldTrayIsThere() const {
  auto* connection = x11Connection();
  if (connection == nullptr) return false;
  const auto selection = atom(connection, "_NET_SYSTEM_TRAY_S0");
  const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> reply(
      xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr), &std::free);
  return reply && reply->owner != XCB_WINDOW_NONE;
}

void TrayWatch::look() {
  if (isAvailable_ || !(statusItemHostIsThere() || oldTrayIsThere())) return;
  isAvailable_ = true;
  qGuiApp->removeNativeEventFilter(this);
  if (busWatcher_ != nullptr) busWatcher_->deleteLater();
  Q_EMIT available();
}

bool TrayWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
  // A tray announces itself to the root window with MANAGER; anything else is not ours.
  static const xcb_atom_t manager = atom(x11Connection(), "MANAGER");
  if (reinterpret_cast<const xcb_client_message_event_t*>(event)->type == manager) {
    QMetaObject::invokeMethod(this, &TrayWatch::look, Qt::QueuedConnection);
  }
  return false;
}

}  // namespace quillmere
