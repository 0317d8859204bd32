// Icons of every kind come at the size that was asked for; those that can't be had come as one clear pixel.
#include "views/shared/AppIconProvider.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <memory>

#include "platform/memory/MemoryWorkspace.h"

namespace quillmere {
namespace {

constexpr const char* player = "com.example.player";
constexpr QSize asked(44, 44);

class AppIcons : public testing::Test {
 protected:
  [[nodiscard]] QImage icon(const std::string& bundleID, QSize size = asked) {
    const std::unique_ptr<QQuickImageResponse> response(
        provider.requestImageResponse(AppIconProvider::urlFor(bundleID).path().mid(1), size));
    // What the pool has finished already has told nobody; what comes through the main thread needs its loop.
    QThreadPool::globalInstance()->waitForDone();
    const auto image = [&] {
      const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
      return texture ? texture->image() : QImage();
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return !image().isNull(); }));
    return image();
  }
  static QImage filled(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    return image;
  }

  QTemporaryDir folder;
  MemoryWorkspace workspace;
  AppIconProvider provider{workspace};
};

TEST_F(AppIcons, FileIsScaledToTheSizeAskedFor) {
  const auto path = folder.filePath("icon.png");
  ASSERT_TRUE(filled(256, 256).save(path));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  EXPECT_EQ(icon(player).size(), asked);
  EXPECT_EQ(icon(player, {128, 128}).size(), QSize(128, 128));
}

TEST_F(AppIcons, CornersAreRoundedByTheShareThatIsAskedFor) {
  const auto path = folder.filePath("icon.png");
  ASSERT_TRUE(filled(256, 256).save(path));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  const auto rounded = [&](const QString& query) {
    const auto url = AppIconProvider::urlFor(player);
    const std::unique_ptr<QQuickImageResponse> response(
        provider.requestImageResponse(url.path().mid(1) + query, {100, 100}));
    QThreadPool::globalInstance()->waitForDone();
    const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
    return texture->image();
  };
  // A corner of half the width is a circle; one of nothing leaves the square.
  EXPECT_EQ(rounded("?corner=0").pixelColor(0, 0), QColor(Qt::red));
  EXPECT_EQ(rounded("?corner=0.5").pixelColor(10, 10).alpha(), 0);
  EXPECT_EQ(rounded("?corner=0.2").pixelColor(10, 10), QColor(Qt::red));
  EXPECT_EQ(rounded("?corner=0.2").pixelColor(1, 1).alpha(), 0);
  EXPECT_EQ(rounded("?corner=7").pixelColor(10, 10).alpha(), 0);
  EXPECT_EQ(rounded("?corner=nonsense").size(), QSize(100, 100));
}

TEST_F(AppIcons, CornersAreRounded) {
  const auto path = folder.filePath("icon.png");
  ASSERT_TRUE(filled(256, 256).save(path));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  const auto image = icon(player);
  EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(image.pixelColor(22, 22), QColor(Qt::red));
}

TEST_F(AppIcons, OblongPictureStandsInTheMiddleWithItsProportions) {
  const auto path = folder.filePath("wide.png");
  ASSERT_TRUE(filled(200, 100).save(path));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  const auto image = icon(player);
  EXPECT_EQ(image.size(), asked);
  EXPECT_EQ(image.pixelColor(22, 4).alpha(), 0);
  EXPECT_EQ(image.pixelColor(22, 22), QColor(Qt::red));
}

TEST_F(AppIcons, EncodedPictureIsRead) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  ASSERT_TRUE(filled(64, 64).save(&buffer, "PNG"));
  EncodedIcon encoded;
  for (const char each : bytes) encoded.png.push_back(static_cast<std::byte>(each));
  workspace.setIcon(player, encoded);
  EXPECT_EQ(icon(player).size(), asked);
}

TEST_F(AppIcons, UnknownApplicationIsOneClearPixel) {
  const auto image = icon("com.example.unknown");
  EXPECT_EQ(image.size(), QSize(1, 1));
  EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

TEST_F(AppIcons, MissingFileIsOneClearPixel) {
  workspace.setIcon(player, FileIcon{folder.filePath("gone.png").toStdString()});
  EXPECT_EQ(icon(player).size(), QSize(1, 1));
}

TEST_F(AppIcons, DamagedPictureIsOneClearPixel) {
  workspace.setIcon(player, EncodedIcon{std::vector<std::byte>(100, std::byte{42})});
  EXPECT_EQ(icon(player).size(), QSize(1, 1));
}

TEST_F(AppIcons, NameThatNoThemeKnowsIsOneClearPixel) {
  workspace.setIcon(player, ThemedIcon{"no-such-icon-anywhere"});
  EXPECT_EQ(icon(player).size(), QSize(1, 1));
}

TEST_F(AppIcons, ANameIsFoundThoughTheDesktopNamesNoTheme) {
  const QDir themes(folder.path());
  ASSERT_TRUE(themes.mkpath("Adwaita/48x48/apps"));
  QFile index(themes.filePath("Adwaita/index.theme"));
  ASSERT_TRUE(index.open(QIODevice::WriteOnly));
  index.write("[Icon Theme]\nName=Adwaita\nDirectories=48x48/apps\n\n[48x48/apps]\nSize=48\nType=Fixed\n");
  index.close();
  ASSERT_TRUE(filled(48, 48).save(themes.filePath("Adwaita/48x48/apps/usual-player.png")));
  const auto paths = QIcon::themeSearchPaths();
  const auto named = QIcon::themeName();
  QIcon::setThemeSearchPaths({folder.path()});
  QIcon::setThemeName("hicolor");
  workspace.setIcon(player, ThemedIcon{"usual-player"});
  EXPECT_EQ(icon(player).size(), asked);
  QIcon::setThemeName(named);
  QIcon::setThemeSearchPaths(paths);
}

}  // namespace
}  // namespace quillmere
