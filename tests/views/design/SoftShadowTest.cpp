// The pictures of shadows.
#include "views/design/SoftShadow.h"

#include <gtest/gtest.h>

#include <QQuickWindow>
#include <QTest>
#include <algorithm>
#include <cstdlib>

namespace quillmere {
namespace {

TEST(SoftShadow, FadesOutBeforeThePicturesEdge) {
  const ShadowShape shape{.size = {60, 60}, .corner = 10, .radius = 10, .offsetDown = 4, .cutOut = false};
  const QImage image = drawShadow(shape, 1);
  for (int i = 0; i < image.width(); ++i) {
    EXPECT_LE(qAlpha(image.pixel(i, 0)), 3);
    EXPECT_LE(qAlpha(image.pixel(i, image.height() - 1)), 3);
    EXPECT_LE(qAlpha(image.pixel(0, i)), 3);
    EXPECT_LE(qAlpha(image.pixel(image.width() - 1, i)), 3);
  }
}

TEST(SoftShadow, LiesLowerThanItsShapeAndStraightBelowIt) {
  const ShadowShape shape{.size = {60, 60}, .corner = 10, .radius = 6, .offsetDown = 4, .cutOut = false};
  const QImage image = drawShadow(shape, 1);
  const int middle = image.width() / 2;
  const int reach = static_cast<int>(shape.reach());
  EXPECT_GT(qAlpha(image.pixel(middle, image.height() - reach)), qAlpha(image.pixel(middle, reach - 1)));
  for (int i = 0; i < middle; ++i) {
    EXPECT_NEAR(qAlpha(image.pixel(i, 40)), qAlpha(image.pixel(image.width() - 1 - i, 40)), 1);
  }
}

TEST(SoftShadow, HalfTheInkIsLeftAtTheEdgeOfAWideShape) {
  const ShadowShape shape{.size = {120, 120}, .corner = 0, .radius = 8, .offsetDown = 0, .cutOut = false};
  const QImage image = drawShadow(shape, 1);
  const int reach = static_cast<int>(shape.reach());
  const int middle = image.height() / 2;
  EXPECT_NEAR((qAlpha(image.pixel(reach - 1, middle)) + qAlpha(image.pixel(reach, middle))) / 2, 128, 4);
  // A Gaussian of that deviation leaves 16 % one deviation outside.
  EXPECT_NEAR(qAlpha(image.pixel(reach - 8, middle)), 0.16 * 255, 8);
}

TEST(SoftShadow, CutOutLeavesTheInsideClear) {
  const ShadowShape shape{.size = {60, 60}, .corner = 10, .radius = 6, .offsetDown = 4, .cutOut = true};
  const QImage image = drawShadow(shape, 1);
  EXPECT_EQ(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 0);
  const int below = static_cast<int>(shape.reach()) + 60 + 2;
  EXPECT_GT(qAlpha(image.pixel(image.width() / 2, below)), 60);
}

/// The shadow as an item shows it: black on white.
QImage shown(QSizeF size, double corner, double radius, double offsetDown) {
  QQuickWindow window;
  window.setColor(Qt::white);
  const double reach = ShadowShape{size, corner, radius, offsetDown, false}.reach();
  window.resize((size + QSizeF(2 * reach, 2 * reach)).toSize());
  SoftShadow item;
  item.setColor(Qt::black);
  item.setCorner(corner);
  item.setBlurRadius(radius);
  item.setOffsetDown(offsetDown);
  item.setCutOut(false);
  item.setSize(size);
  item.setPosition({reach, reach});
  item.setParentItem(window.contentItem());
  window.show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  const QImage image = window.grabWindow();
  item.setParentItem(nullptr);
  return image;
}

TEST(SoftShadow, StretchedPictureOfAnySizeIsTheOneThatWouldBeDrawnWhole) {
  for (const QSizeF size : {QSizeF(500, 300), QSizeF(500, 41), QSizeF(36, 300), QSizeF(30, 30), QSizeF(81, 60)}) {
    const QImage image = shown(size, 12, 9, 3);
    const QImage whole = drawShadow({.size = size, .corner = 12, .radius = 9, .offsetDown = 3, .cutOut = false}, 1);
    ASSERT_EQ(image.size(), whole.size());
    int worst = 0;
    for (int y = 0; y < whole.height(); ++y) {
      for (int x = 0; x < whole.width(); ++x) {
        worst = std::max(worst, std::abs(255 - qGray(image.pixel(x, y)) - qAlpha(whole.pixel(x, y))));
      }
    }
    EXPECT_LE(worst, 2) << size.width() << " by " << size.height();
  }
}

TEST(SoftShadow, HasAsManyPixelsAsTheScaleAsksFor) {
  const ShadowShape shape{.size = {20, 20}, .corner = 10, .radius = 2, .offsetDown = 1, .cutOut = false};
  EXPECT_EQ(drawShadow(shape, 2).width(), 2 * drawShadow(shape, 1).width());
}

}  // namespace
}  // namespace quillmere
