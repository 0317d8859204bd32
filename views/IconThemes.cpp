// The desktop's settings first, then what is installed.
#include "views/IconThemes.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QStandardPaths>
#include <utility>

namespace quillmere {

namespace {

constexpr DesktopSetting settings[] = {
    {QLatin1StringView("lxqt/lxqt.conf"), QLatin1StringView("icon_theme"), QLatin1StringView("LXQt")},
    {QLatin1StringView("kdeglobals"), QLatin1StringView("Icons/Theme"), QLatin1StringView("KDE")},
    {QLatin1StringView("gtk-4.0/settings.ini"), QLatin1StringView("Settings/gtk-icon-theme-name"), {}},
    {QLatin1StringView("gtk-3.0/settings.ini"), QLatin1StringView("Settings/gtk-icon-theme-name"), {}},
};

constexpr QLatin1StringView wellFilledThemes[] = {
    QLatin1StringView("Adwaita"),    QLatin1StringView("breeze"), QLatin1StringView("Papirus"),
    QLatin1StringView("elementary"), QLatin1StringView("Yaru"),   QLatin1StringView("oxygen"),
    QLatin1StringView("Tango"),      QLatin1StringView("gnome"),  QLatin1StringView("Humanity"),
};

/// A name that could be a folder's, and nothing else.
bool isThemeName(const QString& name) {
  constexpr int maxLength = 100;
  return !name.isEmpty() && name.size() <= maxLength && !name.contains('/') && !name.startsWith('.');
}

bool isNone(const QString& theme) { return theme.isEmpty() || theme == QLatin1StringView("hicolor"); }

}  // namespace

QString configuredIconTheme(const DesktopPlaces& places) {
  for (const auto& value : desktopSettings(settings, places)) {
    if (auto name = value.toString(); isThemeName(name)) return name;
  }
  return {};
}

QString installedIconTheme(const QStringList& searchPaths) {
  for (const auto& theme : wellFilledThemes) {
    for (const auto& path : searchPaths) {
      if (QFileInfo(path + '/' + theme + QLatin1StringView("/index.theme")).isFile()) return theme;
    }
  }
  return {};
}

void useIconThemes(const DesktopPlaces& places) {
  if (isNone(QIcon::themeName())) {
    if (const auto theme = configuredIconTheme(places); !theme.isEmpty()) QIcon::setThemeName(theme);
  }
  if (isNone(QIcon::fallbackThemeName())) {
    if (const auto theme = installedIconTheme(QIcon::themeSearchPaths()); !theme.isEmpty()) {
      QIcon::setFallbackThemeName(theme);
    }
  }
  auto folders = QIcon::fallbackSearchPaths();
  for (const auto& folder : QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("pixmaps"),
                                                      QStandardPaths::LocateDirectory)) {
    if (!folders.contains(folder)) folders.append(folder);
  }
  QIcon::setFallbackSearchPaths(folders);
}

}  // namespace quillmere
