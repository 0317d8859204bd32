// The toolkit first, then the files of those who would have told it.
#include "views/DesktopFont.h"

#include <QStringList>

#include "views/design/Appearance.h"

namespace quillmere {

namespace {

constexpr int maxNameLength = 100;

constexpr DesktopSetting settings[] = {
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

QString desktopFontFamily(const QString& toolkits, const DesktopPlaces& places) {
  if (!Appearance::isAnyFace(toolkits)) return toolkits;
  for (const auto& value : desktopSettings(settings, places)) {
    if (const auto family = familyIn(value); !Appearance::isAnyFace(family)) return family;
  }
  return toolkits;
}

}  // namespace quillmere
