// Whether panels are light or dark: asks the desktop portal, and listens to it.
#include "windows/PanelTheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace quillmere {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");

/// The portal's values: 1 prefers dark, 2 prefers light, anything else has no preference.
std::optional<bool> prefersDark(QVariant value) {
  // Read() wraps its answer in one variant more than the signal does.
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  const auto scheme = value.toUInt();
  if (scheme != 1 && scheme != 2) return std::nullopt;
  return scheme == 1;
}

}  // namespace

PanelTheme& PanelTheme::shared() {
  static PanelTheme theme;
  return theme;
}

PanelTheme::PanelTheme() {
  auto bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(portal, portalPath, settings, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  auto call = QDBusMessage::createMethodCall(portal, portalPath, settings, QStringLiteral("Read"));
  call.setAutoStartService(false);
  call << appearance << colorScheme;
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) setPrefersDark(prefersDark(reply.value().variant()));
    watcher->deleteLater();
  });
}

QColor PanelTheme::foreground() const {
  // Without a word from the desktop: what stands out on black and on white alike.
  if (!prefersDark_) return {0x80, 0x80, 0x80};
  return *prefersDark_ ? QColor(0xF2, 0xF2, 0xF2) : QColor(0x24, 0x24, 0x24);
}

void PanelTheme::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == appearance && key == colorScheme) setPrefersDark(prefersDark(value.variant()));
}

void PanelTheme::setPrefersDark(std::optional<bool> preference) {
  if (prefersDark_ == preference) return;
  prefersDark_ = preference;
  Q_EMIT changed();
}

}  // namespace quillmere
