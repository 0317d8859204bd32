// Which windows are fetched to where the person is, and which are left alone.
#include "windows/WindowSight.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(WindowSight, AWindowWithTheKeyboardIsSeenWhateverElseIsTold) {
  EXPECT_FALSE(isOutOfSight({.isActive = true, .isExposed = false}));
  EXPECT_FALSE(isOutOfSight({.isActive = true, .isX11 = true, .isOnAnotherDesktop = true}));
  EXPECT_FALSE(isOutOfSight({.isActive = true, .isX11 = true, .isUntold = true}));
}

TEST(WindowSight, OnWaylandOneWhosePicturesNobodyWantsIsOutOfSight) { EXPECT_TRUE(isOutOfSight({.isExposed = false})); }

TEST(WindowSight, OnWaylandOneBesideAnotherIsSeen) { EXPECT_FALSE(isOutOfSight({.isExposed = true})); }

TEST(WindowSight, OnAnXServerTheWindowManagersWordCounts) {
  EXPECT_TRUE(isOutOfSight({.isX11 = true, .isOnAnotherDesktop = true}));
  EXPECT_FALSE(isOutOfSight({.isX11 = true, .isExposed = false})) << "an X server tells nothing by that";
}

TEST(WindowSight, WhereNobodyTellsAWindowWithoutTheKeyboardMayBeAnywhere) {
  EXPECT_TRUE(isOutOfSight({.isX11 = true, .isUntold = true}));
}

}  // namespace
}  // namespace quillmere
