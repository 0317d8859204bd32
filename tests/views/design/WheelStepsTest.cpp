// How scroll events become steps and distances.
#include "views/design/WheelSteps.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(WheelSteps, ANotchIsOneStepInItsDirection) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 120}), 1);
  EXPECT_EQ(steps.step({.angle = -120}), -1);
}

TEST(WheelSteps, TheSizeOfAnEventPlaysNoPart) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 960}), 1);
  EXPECT_EQ(steps.step({.angle = -360}), -1);
}

TEST(WheelSteps, AnEventWithoutVerticalPartCountsAsDownward) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 0}), -1);
}

TEST(WheelSteps, AFineWheelsTurnsAddUpToANotch) {
  WheelSteps steps;
  int sum = 0;
  for (int i = 0; i < 7; ++i) sum += steps.step({.angle = 15});
  EXPECT_EQ(sum, 0);
  EXPECT_EQ(steps.step({.angle = 15}), 1);
}

TEST(WheelSteps, WhatIsLeftOverANotchCountsForTheNext) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 80}), 0);
  EXPECT_EQ(steps.step({.angle = 80}), 1);
  EXPECT_EQ(steps.step({.angle = 80}), 1);
  EXPECT_EQ(steps.step({.angle = 80}), 0);
}

TEST(WheelSteps, TurningBackStartsAnew) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 100}), 0);
  EXPECT_EQ(steps.step({.angle = -100}), 0);
  EXPECT_EQ(steps.step({.angle = -20}), -1);
}

TEST(WheelSteps, ABegunNotchIsForgottenWhenThePointerLeaves) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.angle = 100}), 0);
  steps.reset();
  EXPECT_EQ(steps.step({.angle = 100}), 0);
}

TEST(WheelSteps, PixelsAloneAddUpToo) {
  WheelSteps steps;
  EXPECT_EQ(steps.step({.pixels = 14, .fromTouchpad = true}), 0);
  EXPECT_EQ(steps.step({.pixels = 1, .fromTouchpad = true}), 1);
}

TEST(ScrollDistance, OfAWheelIsTenPointsANotch) {
  EXPECT_EQ(scrollDistance({.angle = 120}), 10);
  EXPECT_EQ(scrollDistance({.angle = -240}), -20);
}

TEST(ScrollDistance, OfAFineWheelAddsUpToTheSameAsACommonWheel) {
  double sum = 0;
  for (int i = 0; i < 8; ++i) sum += scrollDistance({.angle = 15});
  EXPECT_DOUBLE_EQ(sum, scrollDistance({.angle = 120}));
}

TEST(ScrollDistance, OfATouchpadIsItsPoints) {
  EXPECT_EQ(scrollDistance({.angle = 24, .pixels = -9, .fromTouchpad = true}), -9);
  EXPECT_EQ(scrollDistance({.angle = 24, .fromTouchpad = true}), 3);
}

TEST(ScrollDistance, OfAWheelIgnoresPixelsThatADriverInvents) {
  EXPECT_EQ(scrollDistance({.angle = 120, .pixels = 120}), 10);
}

TEST(ScrollDistance, OfAnEventWithoutVerticalPartIsNought) { EXPECT_EQ(scrollDistance({}), 0); }

}  // namespace
}  // namespace quillmere
