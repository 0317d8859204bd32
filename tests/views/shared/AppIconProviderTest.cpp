// Icons of every kind come at the size that was asked for; those that can't be had come as one clear pixel.
#include "views/shared/AppIconProvider.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <memory>
#include <mutex>

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

TEST_F(AppIcons, ThemesAreReadOnlyOnceThePictureStands) {
  provider.waitForPicture();
  workspace.setIcon(player, ThemedIcon{"no-such-icon"});
  const std::unique_ptr<QQuickImageResponse> response(
      provider.requestImageResponse(AppIconProvider::urlFor(player).path().mid(1), asked));
  bool isFinished = false;
  QObject::connect(response.get(), &QQuickImageResponse::finished, [&isFinished] { isFinished = true; });
  QThreadPool::globalInstance()->waitForDone();
  // What the pool has asked of the main thread is done.
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
  EXPECT_FALSE(isFinished);
  provider.pictureStands();
  EXPECT_TRUE(QTest::qWaitFor([&isFinished] { return isFinished; }));
}

TEST_F(AppIcons, OneThatIsGivenUpBeforeThePictureStandsIsNoTrouble) {
  provider.waitForPicture();
  workspace.setIcon(player, ThemedIcon{"no-such-icon"});
  delete provider.requestImageResponse(AppIconProvider::urlFor(player).path().mid(1), asked);
  QThreadPool::globalInstance()->waitForDone();
  QCoreApplication::processEvents();
  provider.pictureStands();
}

TEST_F(AppIcons, NameThatNoThemeKnowsIsOneClearPixel) {
  workspace.setIcon(player, ThemedIcon{"no-such-icon-anywhere"});
  EXPECT_EQ(icon(player).size(), QSize(1, 1));
}

/// The lines about icons while this lives.
class IconLines {
 public:
  IconLines() {
    lines().clear();
    before_ = qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
      const std::scoped_lock lock(mutex());
      if (QByteArray(context.category) == "app.quillmere.icons") lines().append(text);
    });
  }
  ~IconLines() { qInstallMessageHandler(before_); }
  IconLines(const IconLines&) = delete;
  IconLines& operator=(const IconLines&) = delete;
  [[nodiscard]] static QStringList told() {
    const std::scoped_lock lock(mutex());
    return lines();
  }

 private:
  static QStringList& lines() {
    static QStringList each;
    return each;
  }
  static std::mutex& mutex() {
    static std::mutex one;
    return one;
  }
  QtMessageHandler before_;
};

TEST_F(AppIcons, PictureTwentyThousandPixelsWideIsRefusedWithOneLine) {
  const auto path = folder.filePath("wide.png");
  ASSERT_TRUE(filled(20000, 2).save(path));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  const IconLines lines;
  EXPECT_EQ(icon(player).size(), QSize(1, 1));
  EXPECT_EQ(icon(player, {88, 88}).size(), QSize(1, 1));
  EXPECT_EQ(IconLines::told(), QStringList{"icon left out: " + path + ": 20000 by 2 pixels"});
}

TEST_F(AppIcons, DrawingOfAnySizeIsDrawnAtTheSizeAskedFor) {
  const auto path = folder.filePath("drawing.svg");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(
      "<svg xmlns='http://www.w3.org/2000/svg' width='20000' height='20000'><rect width='20000' height='20000' "
      "fill='red'/></svg>");
  file.close();
  workspace.setIcon(player, FileIcon{path.toStdString()});
  const auto image = icon(player);
  EXPECT_EQ(image.size(), asked);
  EXPECT_EQ(image.pixelColor(22, 22), QColor(Qt::red));
}

TEST_F(AppIcons, WhatIsNoPictureOrWouldNeverEndIsOneClearPixelAndOneLine) {
  const auto write = [this](const char* name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  };
  write("text.png", "this is no picture");
  write("empty.png", "");
  write("cut.png", QByteArray("\x89PNG\r\n\x1a\n", 8));
  write("huge.png", QByteArray(17 * 1024 * 1024, 'x'));
  ASSERT_EQ(::mkfifo(folder.filePath("pipe.png").toLocal8Bit().constData(), 0600), 0);
  ASSERT_TRUE(QFile::link("/dev/zero", folder.filePath("endless.png")));
  ASSERT_TRUE(QFile::link(folder.filePath("circle.png"), folder.filePath("circle.png")));
  ASSERT_TRUE(QDir(folder.path()).mkdir("folder.png"));
  const IconLines lines;
  int files = 0;
  for (const auto* name : {"text.png", "empty.png", "cut.png", "huge.png", "pipe.png", "endless.png", "circle.png",
                           "folder.png", "odd\nname.png"}) {
    workspace.setIcon(player, FileIcon{folder.filePath(name).toStdString()});
    EXPECT_EQ(icon(player).size(), QSize(1, 1)) << name;
    ++files;
    ASSERT_EQ(IconLines::told().size(), files) << name;
    EXPECT_FALSE(IconLines::told().back().contains('\n')) << name;
  }
}

TEST_F(AppIcons, PictureUnderAnothersNameIsStillAPicture) {
  const auto path = folder.filePath("icon.svg");
  ASSERT_TRUE(filled(64, 64).save(path, "PNG"));
  workspace.setIcon(player, FileIcon{path.toStdString()});
  EXPECT_EQ(icon(player).size(), asked);
}

}  // namespace
}  // namespace quillmere
