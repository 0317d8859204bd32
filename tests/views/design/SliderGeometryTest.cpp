// Where the level slider's parts lie.
#include "views/design/SliderGeometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillmere {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(SliderGeometry, FractionIsTheShareOfTheRangeBelowTheValue) {
  const SliderGeometry geometry{.lower = 50, .upper = 150, .width = 200};
  EXPECT_DOUBLE_EQ(geometry.fraction(75), 0.25);
}

TEST(SliderGeometry, FractionIsNotLimited) {
  const SliderGeometry geometry{.width = 200};
  EXPECT_DOUBLE_EQ(geometry.fraction(1.5), 1.5);
  EXPECT_DOUBLE_EQ(geometry.fraction(-0.5), -0.5);
}

TEST(SliderGeometry, ARangeOfZeroWidthPutsTheThumbAtTheLeadingEnd) {
  const SliderGeometry geometry{.lower = 0.4, .upper = 0.4, .width = 200};
  EXPECT_EQ(geometry.fraction(0.4), 0);
  EXPECT_EQ(geometry.thumbCentre(0.4), 7);
  EXPECT_EQ(geometry.fillWidth(0.4), 0);
}

TEST(SliderGeometry, TheThumbNeverHangsOutOfTheTrack) {
  const SliderGeometry geometry{.width = 200};
  EXPECT_EQ(geometry.thumbCentre(0), 7);
  EXPECT_EQ(geometry.thumbCentre(1), 193);
  EXPECT_EQ(geometry.thumbCentre(0.5), 100);
  EXPECT_EQ(geometry.thumbCentre(4), 193);
  EXPECT_EQ(geometry.thumbCentre(-4), 7);
}

TEST(SliderGeometry, AWidthNarrowerThanTheThumbFollowsTheLeadingBound) {
  const SliderGeometry geometry{.width = 6};
  EXPECT_EQ(geometry.thumbCentre(0), 7);
  EXPECT_EQ(geometry.thumbCentre(1), 7);
}

TEST(SliderGeometry, TheFillRunsToTheTruePositionAndNotToTheThumb) {
  const SliderGeometry geometry{.width = 200};
  EXPECT_EQ(geometry.fillWidth(1), 200);
  EXPECT_EQ(geometry.fillWidth(0.01), 2);
  EXPECT_EQ(geometry.fillWidth(-1), 0);
}

TEST(SliderGeometry, APlaceBeyondEitherEndStandsForTheBound) {
  const SliderGeometry geometry{.lower = 10, .upper = 20, .width = 200};
  EXPECT_EQ(geometry.valueAt(-30), 10);
  EXPECT_EQ(geometry.valueAt(230), 20);
  EXPECT_EQ(geometry.valueAt(50), 12.5);
}

TEST(SliderGeometry, WithoutWidthEveryPlaceIsTheLowerBound) {
  const SliderGeometry geometry{.width = 0};
  EXPECT_EQ(geometry.valueAt(0), 0);
  EXPECT_EQ(geometry.valueAt(10), 0);
}

TEST(SliderGeometry, WhatIsNoNumberIsDrawnAndStoredAsTheLowerBound) {
  const SliderGeometry geometry{.width = 200};
  EXPECT_EQ(geometry.fraction(nan), 0);
  EXPECT_EQ(geometry.valueAt(nan), 0);
  EXPECT_EQ(geometry.limited(nan), 0);
  EXPECT_EQ(geometry.limited(std::numeric_limits<double>::infinity()), 1);
}

}  // namespace
}  // namespace quillmere
