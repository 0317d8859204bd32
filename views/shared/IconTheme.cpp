// What the desktop says, what other toolkits were told, what is there.
#include "views/shared/IconTheme.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <array>

namespace quillmere {

namespace {

/// What every theme falls back on: it has what applications bring along, and nothing of its own.
const QString bare = QStringLiteral("hicolor");

/// Themes that desktops come with and that name all the usual applications, those that suit dark ground well first.
constexpr std::array usual{"Adwaita", "breeze-dark", "breeze",     "Papirus-Dark", "Papirus",
                           "Yaru",    "oxygen",      "elementary", "gnome",        "Tango"};

constexpr qint64 largestSettings = 64 * 1024;

bool isInstalled(const QString& theme, const QStringList& themes) {
  if (theme.isEmpty() || theme.contains(QLatin1Char('/'))) return false;
  return std::any_of(themes.begin(), themes.end(), [&theme](const QString& folder) {
    return QFileInfo::exists(folder + QLatin1Char('/') + theme + QStringLiteral("/index.theme"));
  });
}

QString told(const QString& file, const QString& key) {
  const QFileInfo info(file);
  if (!info.isFile() || info.size() > largestSettings) return {};
  return QSettings(file, QSettings::IniFormat).value(key).toString();
}

}  // namespace

QString iconThemeFor(const QString& named, const QStringList& themes, const QString& settings) {
  if (named != bare && isInstalled(named, themes)) return named;
  const QString gtk = QStringLiteral("Settings/gtk-icon-theme-name");
  const std::array candidates{told(settings + QStringLiteral("/lxqt/lxqt.conf"), QStringLiteral("icon_theme")),
                              told(settings + QStringLiteral("/gtk-4.0/settings.ini"), gtk),
                              told(settings + QStringLiteral("/gtk-3.0/settings.ini"), gtk)};
  for (const auto& theme : candidates) {
    if (theme != bare && isInstalled(theme, themes)) return theme;
  }
  for (const auto* theme : usual) {
    if (isInstalled(QString::fromLatin1(theme), themes)) return QString::fromLatin1(theme);
  }
  return {};
}

void ensureIconTheme() {
  static QString looked;
  if (!looked.isNull() && looked == QIcon::themeName()) return;
  const auto settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  const auto theme = iconThemeFor(QIcon::themeName(), QIcon::themeSearchPaths(), settings);
  if (!theme.isEmpty() && theme != QIcon::themeName()) QIcon::setThemeName(theme);
  looked = QIcon::themeName();
}

}  // namespace quillmere
