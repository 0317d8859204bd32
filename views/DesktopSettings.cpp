// Files in the format that desktops share.
#include "views/DesktopSettings.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace quillmere {

namespace {

/// A file of settings is a page or two; what is longer is none.
constexpr qint64 maxSettingsBytes = qint64{256} * 1024;

}  // namespace

DesktopPlaces desktopPlaces() {
  return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
          qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':', Qt::SkipEmptyParts)};
}

QList<QVariant> desktopSettings(std::span<const DesktopSetting> settings, const DesktopPlaces& places) {
  QList<QVariant> values;
  for (const auto& setting : settings) {
    if (!setting.desktop.isEmpty() && !places.desktops.contains(setting.desktop)) continue;
    const auto path = places.configHome + '/' + setting.file;
    const QFileInfo file(path);
    if (!file.isFile() || file.size() > maxSettingsBytes) continue;
    if (auto value = QSettings(path, QSettings::IniFormat).value(setting.key); value.isValid()) values.append(value);
  }
  return values;
}

}  // namespace quillmere
