// Themes that desktops name, themes that are installed, and icons on desktops that name none.
#include "views/IconThemes.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>

namespace quillmere {
namespace {

class IconThemes : public testing::Test {
 protected:
  void TearDown() override {
    QIcon::setThemeName(theme);
    QIcon::setFallbackThemeName(fallback);
    QIcon::setThemeSearchPaths(searchPaths);
    QIcon::setFallbackSearchPaths(fallbackPaths);
  }
  void write(const QString& below, const QByteArray& text) const {
    const auto path = folder.filePath(below);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
  /// A theme with one icon of this colour.
  void install(const QString& name, const QString& icon, const QColor& colour) const {
    write("icons/" + name + "/index.theme",
          "[Icon Theme]\nName=" + name.toUtf8() +
              "\nDirectories=48x48/apps\n[48x48/apps]\nSize=48\nContext=Applications\n");
    const auto path = folder.filePath("icons/" + name + "/48x48/apps/" + icon + ".png");
    QDir().mkpath(QFileInfo(path).path());
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    ASSERT_TRUE(image.save(path));
  }
  [[nodiscard]] DesktopPlaces places(QStringList desktops = {"LXQt"}) const {
    return {folder.filePath("config"), std::move(desktops)};
  }
  /// A session whose desktop names no theme to the toolkit.
  void forgetThemes() const {
    QIcon::setThemeSearchPaths({folder.filePath("icons")});
    QIcon::setThemeName("hicolor");
    QIcon::setFallbackThemeName("hicolor");
  }
  static QColor colourOf(const QString& icon) {
    return QIcon::fromTheme(icon).pixmap({48, 48}, 1.0).toImage().pixelColor(24, 24);
  }

  const QString theme = QIcon::themeName();
  const QString fallback = QIcon::fallbackThemeName();
  const QStringList searchPaths = QIcon::themeSearchPaths();
  const QStringList fallbackPaths = QIcon::fallbackSearchPaths();
  QTemporaryDir folder;
};

TEST_F(IconThemes, ADesktopsOwnSettingNamesTheTheme) {
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Papirus\ntheme=dark\n");
  write("config/kdeglobals", "[Icons]\nTheme=breeze-dark\n");
  EXPECT_EQ(configuredIconTheme(places({"LXQt"})), "Papirus");
  EXPECT_EQ(configuredIconTheme(places({"KDE"})), "breeze-dark");
  EXPECT_EQ(configuredIconTheme(places({"sway"})), "") << "the settings of desktops that don't run say nothing";
}

TEST_F(IconThemes, ManyDesktopsShareTheToolkitsSettings) {
  write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=Adwaita\n");
  EXPECT_EQ(configuredIconTheme(places({"sway"})), "Adwaita");
  EXPECT_EQ(configuredIconTheme(places({})), "Adwaita");
}

TEST_F(IconThemes, OddSettingsNameNoTheme) {
  for (const QByteArray& odd :
       {QByteArray(), QByteArray("rubbish \xFF\xFE"), QByteArray("[Settings]\ngtk-icon-theme-name=\n"),
        QByteArray("[Settings]\ngtk-icon-theme-name=../../etc\n"), QByteArray("[Settings]\ngtk-icon-theme-name=..\n"),
        "[Settings]\ngtk-icon-theme-name=" + QByteArray(4096, 'n') + "\n",
        "[Settings]\ngtk-icon-theme-name=Adwaita\n#" + QByteArray(1024 * 1024, ' ')}) {
    write("config/gtk-3.0/settings.ini", odd);
    EXPECT_EQ(configuredIconTheme(places()), "") << odd.left(60).toStdString();
  }
  QFile::remove(folder.filePath("config/gtk-3.0/settings.ini"));
  QDir().mkpath(folder.filePath("config/gtk-3.0/settings.ini"));
  EXPECT_EQ(configuredIconTheme(places()), "");
}

TEST_F(IconThemes, TheFirstWellFilledThemeThatIsInstalledIsFound) {
  EXPECT_EQ(installedIconTheme({folder.filePath("icons")}), "");
  install("breeze", "x", Qt::blue);
  EXPECT_EQ(installedIconTheme({"/nowhere", folder.filePath("icons")}), "breeze");
  install("Adwaita", "x", Qt::blue);
  EXPECT_EQ(installedIconTheme({folder.filePath("icons")}), "Adwaita");
}

TEST_F(IconThemes, WithoutAThemeEachApplicationStillHasItsOwnIcon) {
  install("hicolor", "own", Qt::red);
  install("Adwaita", "player", Qt::green);
  install("Papirus", "mixer", Qt::blue);
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Papirus\n");
  forgetThemes();
  ASSERT_TRUE(QIcon::fromTheme("player").isNull());
  useIconThemes(places());
  EXPECT_EQ(colourOf("mixer"), QColor(Qt::blue)) << "the desktop's theme";
  EXPECT_EQ(colourOf("player"), QColor(Qt::green)) << "one that is installed";
  EXPECT_EQ(colourOf("own"), QColor(Qt::red)) << "what applications bring along";
  EXPECT_TRUE(QIcon::fromTheme("nothing").isNull());
}

TEST_F(IconThemes, TheDesktopsThemeComesBeforeTheInstalledOne) {
  install("Adwaita", "player", Qt::green);
  install("Papirus", "player", Qt::blue);
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Papirus\n");
  forgetThemes();
  useIconThemes(places());
  EXPECT_EQ(colourOf("player"), QColor(Qt::blue));
}

TEST_F(IconThemes, AThemeThatTheToolkitKnowsStays) {
  install("Adwaita", "player", Qt::green);
  install("Mine", "player", Qt::yellow);
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Papirus\n");
  forgetThemes();
  QIcon::setThemeName("Mine");
  useIconThemes(places());
  EXPECT_EQ(QIcon::themeName(), "Mine");
  EXPECT_EQ(colourOf("player"), QColor(Qt::yellow));
}

TEST_F(IconThemes, AConfiguredThemeThatIsNotInstalledHidesNoIcon) {
  install("Adwaita", "player", Qt::green);
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Nowhere\n");
  forgetThemes();
  useIconThemes(places());
  EXPECT_EQ(colourOf("player"), QColor(Qt::green));
}

}  // namespace
}  // namespace quillmere
