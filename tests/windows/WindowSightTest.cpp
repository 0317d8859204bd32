// Which windows are fetched to where the person is, and which are left alone.
#include "windows/WindowSight.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(WindowSight, OnWaylandOneWhosePicturesNobodyWantsIsElsewhere) {
  EXPECT_EQ(sightFrom({.isExposed = false}), Sight::unseen);
}

TEST(WindowSight, OnWaylandOneBesideAnotherIsSeen) { EXPECT_EQ(sightFrom({.isExposed = true}), Sight::seen); }

TEST(WindowSight, OnWaylandOneThatNobodyWantsAndThatHasTheKeyboardIsDoubtful) {
  EXPECT_EQ(sightFrom({.isActive = true, .isExposed = false}), Sight::doubtful);
}

TEST(WindowSight, OnAnXServerTheWindowManagersWordCounts) {
  EXPECT_EQ(sightFrom({.isX11 = true, .isOnAnotherDesktop = true}), Sight::unseen);
  EXPECT_EQ(sightFrom({.isX11 = true, .isExposed = false}), Sight::seen) << "an X server tells nothing by that";
  EXPECT_EQ(sightFrom({.isActive = true, .isX11 = true, .isOnAnotherDesktop = true}), Sight::seen);
}

TEST(WindowSight, WhereNobodyTellsAWindowWithoutTheKeyboardMayBeAnywhere) {
  EXPECT_EQ(sightFrom({.isX11 = true, .isUntold = true}), Sight::unseen);
  EXPECT_EQ(sightFrom({.isActive = true, .isX11 = true, .isUntold = true}), Sight::seen);
}

}  // namespace
}  // namespace quillmere
