// Faces that desktops name.
#include "views/DesktopFont.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace quillmere {
namespace {

class DesktopFont : public testing::Test {
 protected:
  void write(const QString& below, const QByteArray& text) const {
    const auto path = folder.filePath(below);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
  [[nodiscard]] std::string family(const QString& toolkits = "Sans Serif",
                                   const QStringList& desktops = {"XFCE"}) const {
    return desktopFontFamily(toolkits, {folder.path(), desktops}).toStdString();
  }

  QTemporaryDir folder;
};

TEST_F(DesktopFont, TheToolkitsOwnCountsFirst) {
  write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=Cantarell 11\n");
  EXPECT_EQ(family("Noto Sans"), "Noto Sans");
}

TEST_F(DesktopFont, WhereTheToolkitWasToldNoneAnotherToolkitsIsTaken) {
  write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=Liberation Sans 10.5\n");
  EXPECT_EQ(family(), "Liberation Sans");
}

TEST_F(DesktopFont, ANameBeforeACommaIsTheFamily) {
  write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=Noto Sans,  10\n");
  EXPECT_EQ(family(), "Noto Sans");
}

TEST_F(DesktopFont, LxqtHasAFileOfItsOwnWhichIsNobodyElses) {
  write("lxqt/lxqt.conf", "[Qt]\nfont=\"Ubuntu,11,-1,5,50,0,0,0,0,0\"\n");
  EXPECT_EQ(family("Sans Serif", {"LXQt"}), "Ubuntu");
  EXPECT_EQ(family("Sans Serif", {"XFCE"}), "Sans Serif");
}

TEST_F(DesktopFont, ANameThatStandsForAnyFaceIsNone) {
  write("gtk-4.0/settings.ini", "[Settings]\ngtk-font-name=Sans 10\n");
  write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=Cantarell 11\n");
  EXPECT_EQ(family(), "Cantarell");
}

TEST_F(DesktopFont, WithoutSettingsOrWithBadOnesItIsAnyFace) {
  EXPECT_EQ(family(), "Sans Serif");
  write("gtk-4.0/settings.ini", QByteArray(400'000, 'x'));
  write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=\n");
  EXPECT_EQ(family(), "Sans Serif");
}

}  // namespace
}  // namespace quillmere
