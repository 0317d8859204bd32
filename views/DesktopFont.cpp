// The toolkit first, then the files of those who would have told it.
#include "views/DesktopFont.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>

#include "views/design/Appearance.h"

namespace quillmere {

namespace {

/// A file of settings is a page or two; what is longer is none.
constexpr qint64 maxSettingsBytes = qint64{256} * 1024;
constexpr int maxNameLength = 100;

struct FontSetting {
  QLatin1StringView file;
  QLatin1StringView key;
  /// The desktop whose file this is; empty for one that many share.
  QLatin1StringView desktop;
};

constexpr FontSetting settings[] = {
    {QLatin1StringView("lxqt/lxqt.conf"), QLatin1StringView("Qt/font"), QLatin1StringView("LXQt")},
    {QLatin1StringView("gtk-4.0/settings.ini"), QLatin1StringView("Settings/gtk-font-name"), {}},
    {QLatin1StringView("gtk-3.0/settings.ini"), QLatin1StringView("Settings/gtk-font-name"), {}},
};

/// Of "Noto Sans,11,-1,5" as of "Noto Sans 11".
QString familyIn(const QVariant& value) {
  // Commas make it a list, unless it is quoted.
  auto words = value.toStringList().value(0).section(',', 0, 0).simplified().split(' ', Qt::SkipEmptyParts);
  bool isSize = false;
  if (words.size() > 1) static_cast<void>(words.last().toDouble(&isSize));
  if (isSize) words.removeLast();
  return words.join(' ').left(maxNameLength);
}

}  // namespace

QString desktopFontFamily(const QString& toolkits, const IconThemePlaces& places) {
  if (!Appearance::isAnyFace(toolkits)) return toolkits;
  for (const auto& setting : settings) {
    if (!setting.desktop.isEmpty() && !places.desktops.contains(setting.desktop)) continue;
    const auto path = places.configHome + '/' + setting.file;
    const QFileInfo file(path);
    if (!file.isFile() || file.size() > maxSettingsBytes) continue;
    const auto family = familyIn(QSettings(path, QSettings::IniFormat).value(setting.key));
    if (!Appearance::isAnyFace(family)) return family;
  }
  return toolkits;
}

}  // namespace quillmere
