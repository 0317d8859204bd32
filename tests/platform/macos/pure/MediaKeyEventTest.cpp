#include "platform/macos/pure/MediaKeyEvent.h"

#include <gtest/gtest.h>

#include "platform/MediaKeys.h"

namespace quillmere::macos {
namespace {

TEST(MediaKeyEvent, OfThePlayKeyGoingDownIsAnAuxiliaryKeyWithTheStateDown) {
  EXPECT_EQ(mediaKeyEvent(mediakey::play, true), (MediaKeyEvent{0xA00, 8, 0x100A00, -1}));
}

TEST(MediaKeyEvent, OfThePlayKeyGoingUpHasTheStateUpInTheFlagsAndInTheData) {
  EXPECT_EQ(mediaKeyEvent(mediakey::play, false), (MediaKeyEvent{0xB00, 8, 0x100B00, -1}));
}

TEST(MediaKeyEvent, OfTheTransportsKeysHasTheirCodesInTheUpperHalf) {
  EXPECT_EQ(mediaKeyEvent(mediakey::next, true).data1, 0x110A00);
  EXPECT_EQ(mediaKeyEvent(mediakey::previous, false).data1, 0x120B00);
}

}  // namespace
}  // namespace quillmere::macos
