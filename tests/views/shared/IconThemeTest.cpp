// The icon theme where the desktop names none.
#include "views/shared/IconTheme.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quillmere {
namespace {

class IconThemes : public testing::Test {
 protected:
  void install(const QString& theme) { write("icons/" + theme + "/index.theme", "[Icon Theme]\nName=x\n"); }
  void write(const QString& path, const QByteArray& text) {
    const QFileInfo file(folder.filePath(path));
    ASSERT_TRUE(QDir().mkpath(file.path()));
    QFile opened(file.filePath());
    ASSERT_TRUE(opened.open(QIODevice::WriteOnly));
    opened.write(text);
  }
  [[nodiscard]] QString theme(const QString& named) const {
    return iconThemeFor(named, {folder.filePath("none"), folder.filePath("icons")}, folder.filePath("config"));
  }

  QTemporaryDir folder;
};

TEST_F(IconThemes, WhatTheDesktopNamesIsKept) {
  install("Mine");
  install("Adwaita");
  EXPECT_EQ(theme("Mine"), "Mine");
}

TEST_F(IconThemes, WithoutANameItIsOneOfTheUsual) {
  install("oxygen");
  install("Papirus");
  EXPECT_EQ(theme(""), "Papirus");
  EXPECT_EQ(theme("hicolor"), "Papirus");
  install("Adwaita");
  EXPECT_EQ(theme("hicolor"), "Adwaita");
}

TEST_F(IconThemes, ANameThatIsNotInstalledIsNone) {
  install("Adwaita");
  EXPECT_EQ(theme("Gone"), "Adwaita");
}

TEST_F(IconThemes, WhatOtherToolkitsWereToldComesBeforeTheUsual) {
  install("Adwaita");
  install("Chosen");
  install("Desk");
  write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=Chosen\n");
  EXPECT_EQ(theme("hicolor"), "Chosen");
  write("config/lxqt/lxqt.conf", "[General]\nicon_theme=Desk\n");
  EXPECT_EQ(theme("hicolor"), "Desk");
}

TEST_F(IconThemes, SettingsThatMakeNoSenseArePassedOver) {
  install("Adwaita");
  write("config/gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=../../etc\n");
  write("config/gtk-4.0/settings.ini", QByteArray(1 << 20, 'x'));
  write("config/lxqt/lxqt.conf", "\x00\xff[[[");
  EXPECT_EQ(theme("hicolor"), "Adwaita");
}

TEST_F(IconThemes, WhereNoneIsInstalledThereIsNone) { EXPECT_EQ(theme("hicolor"), ""); }

}  // namespace
}  // namespace quillmere
