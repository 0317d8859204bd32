// The ring's limits and its picture.
#include "views/design/RingArc.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillmere {
namespace {

QImage ringAt(double progress, bool gradient = false) {
  return drawRing({.diameter = 100,
                   .lineWidth = 8,
                   .progress = progress,
                   .track = QColor(0, 0, 0, 0),
                   .fill = QColor(255, 255, 255),
                   .useGradient = gradient},
                  QSize(100, 100), 1);
}

TEST(RingArc, ProgressIsHeldBetweenAThousandthAndOne) {
  EXPECT_EQ(RingArc::trim(0), 0.001);
  EXPECT_EQ(RingArc::trim(-3), 0.001);
  EXPECT_EQ(RingArc::trim(0.4), 0.4);
  EXPECT_EQ(RingArc::trim(1.7), 1);
  EXPECT_EQ(RingArc::trim(std::nan("")), 0.001);
}

TEST(RingArc, WithNoProgressStillShowsAPointAtTheTop) {
  const QImage image = ringAt(0);
  EXPECT_EQ(qAlpha(image.pixel(50, 4)), 255);
  EXPECT_EQ(qAlpha(image.pixel(96, 50)), 0);
}

TEST(RingArc, FillsClockwiseFromTheTop) {
  const QImage image = ringAt(0.3);
  EXPECT_EQ(qAlpha(image.pixel(95, 50)), 255);
  EXPECT_EQ(qAlpha(image.pixel(50, 95)), 0);
  EXPECT_EQ(qAlpha(image.pixel(4, 50)), 0);
}

TEST(RingArc, FullProgressClosesTheRing) {
  const QImage image = ringAt(1);
  for (const QPoint place : {QPoint(50, 4), QPoint(95, 50), QPoint(50, 95), QPoint(4, 50)}) {
    EXPECT_EQ(qAlpha(image.pixel(place)), 255);
  }
}

TEST(RingArc, TheGradientGoesFromSageAtTheTopToMint) {
  const QImage image = ringAt(1, true);
  EXPECT_LT(qGreen(image.pixel(58, 5)), 110);
  EXPECT_GT(qGreen(image.pixel(20, 17)), 118);
  EXPECT_LT(qGreen(image.pixel(50, 4)), 105);
}

TEST(RingArc, ALineWiderThanTheRingDrawsNothingAndDoesNotCrash) {
  const QImage image =
      drawRing({.diameter = 6, .lineWidth = 8, .progress = 1, .track = {}, .fill = Qt::white, .useGradient = false},
               QSize(6, 6), 1);
  EXPECT_EQ(qAlpha(image.pixel(3, 0)), 0);
}

}  // namespace
}  // namespace quillmere
