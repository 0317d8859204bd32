// How scroll events become steps and distances.
#include "core/ScrollRule.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

constexpr ScrollEvent touchpad(int pixels, ScrollPhase phase = ScrollPhase::update) {
  return {.angle = pixels * 8, .pixels = pixels, .fromTouchpad = true, .phase = phase};
}

TEST(ScrollRule, ANotchIsAStepAndTheSameWayOverARow) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step({.angle = 120}), 1);
  EXPECT_EQ(steps.step({.angle = -120}), -1);
  EXPECT_DOUBLE_EQ(scrollUnits({.angle = 120}) * gainPerScrollUnit, gainPerScrollStep);
  EXPECT_DOUBLE_EQ(gainPerScrollStep, 0.02);
}

TEST(ScrollRule, AnEventIsOneStepAtMost) {
  ScrollSteps steps;
  for (const int notches : {2, 8, 100}) {
    EXPECT_EQ(steps.step({.angle = 120 * notches}), 1);
    EXPECT_EQ(steps.step({.angle = -120 * notches}), -1);
  }
  // Nor does it leave any of its size to the next one.
  EXPECT_EQ(steps.step({.angle = 300}), 1);
  EXPECT_EQ(steps.step({.angle = 60}), 0);
}

TEST(ScrollRule, PartsOfANotchAddUpToAStep) {
  ScrollSteps steps;
  int sum = 0;
  for (int i = 0; i < 7; ++i) sum += steps.step({.angle = 15});
  EXPECT_EQ(sum, 0);
  EXPECT_EQ(steps.step({.angle = 15}), 1);
}

TEST(ScrollRule, WhatPartsLeaveOverCountsForTheNextStep) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step({.angle = 80}), 0);
  EXPECT_EQ(steps.step({.angle = 80}), 1);
  EXPECT_EQ(steps.step({.angle = 80}), 1);
  EXPECT_EQ(steps.step({.angle = 80}), 0);
}

TEST(ScrollRule, TurningBackStartsAnew) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step({.angle = 100}), 0);
  EXPECT_EQ(steps.step({.angle = -100}), 0);
  EXPECT_EQ(steps.step({.angle = -20}), -1);
}

TEST(ScrollRule, ABegunStepIsForgottenWhenThePointerLeaves) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step({.angle = 100}), 0);
  steps.reset();
  EXPECT_EQ(steps.step({.angle = 100}), 0);
}

TEST(ScrollRule, AWheelsEventWithoutAVerticalPartStepsDownwards) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step({}), -1);
}

TEST(ScrollRule, ATouchpadsFourPointsAreAStep) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step(touchpad(3)), 0);
  EXPECT_EQ(steps.step(touchpad(1)), 1);
  EXPECT_EQ(steps.step(touchpad(-40)), -1);
}

TEST(ScrollRule, TheBeginAndTheEndOfATouchpadsMovementMoveNothing) {
  for (const auto phase : {ScrollPhase::begin, ScrollPhase::end}) {
    ScrollSteps steps;
    EXPECT_EQ(steps.step(touchpad(0, phase)), 0);
    EXPECT_EQ(steps.step(touchpad(12, phase)), 0);
    EXPECT_EQ(scrollUnits(touchpad(12, phase)), 0);
    // Some compositors' devices are not known for touchpads, but their movements begin and end.
    EXPECT_EQ(steps.step({.phase = phase}), 0);
  }
}

TEST(ScrollRule, ATouchpadsSidewaysMovementMovesNothing) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step(touchpad(0)), 0);
  EXPECT_EQ(steps.step(touchpad(0, ScrollPhase::none)), 0);
}

TEST(ScrollRule, AMovementLeavesNothingToTheNext) {
  ScrollSteps steps;
  EXPECT_EQ(steps.step(touchpad(3)), 0);
  EXPECT_EQ(steps.step(touchpad(0, ScrollPhase::end)), 0);
  EXPECT_EQ(steps.step(touchpad(0, ScrollPhase::begin)), 0);
  EXPECT_EQ(steps.step(touchpad(3)), 0);
}

TEST(ScrollUnits, OfAWheelAreFourANotchWhateverItsFineness) {
  EXPECT_EQ(scrollUnits({.angle = -240}), -8);
  double sum = 0;
  for (int i = 0; i < 8; ++i) sum += scrollUnits({.angle = 15});
  EXPECT_DOUBLE_EQ(sum, scrollUnits({.angle = 120}));
}

TEST(ScrollUnits, OfATouchpadAreItsPoints) {
  EXPECT_EQ(scrollUnits({.angle = 24, .pixels = -9, .fromTouchpad = true}), -9);
  EXPECT_EQ(scrollUnits({.angle = 24, .fromTouchpad = true}), 3);
}

TEST(ScrollUnits, OfAWheelIgnorePixelsThatADriverInvents) { EXPECT_EQ(scrollUnits({.angle = 120, .pixels = 120}), 4); }

TEST(ScrollUnits, OfAnEventWithoutVerticalPartAreNought) { EXPECT_EQ(scrollUnits({}), 0); }

}  // namespace
}  // namespace quillmere
