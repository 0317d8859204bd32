// The pictures of shadows.
#include "views/design/SoftShadow.h"

#include <gtest/gtest.h>

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

TEST(SoftShadow, HasAsManyPixelsAsTheScaleAsksFor) {
  const ShadowShape shape{.size = {20, 20}, .corner = 10, .radius = 2, .offsetDown = 1, .cutOut = false};
  EXPECT_EQ(drawShadow(shape, 2).width(), 2 * drawShadow(shape, 1).width());
}

}  // namespace
}  // namespace quillmere
