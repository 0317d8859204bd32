// What every sound player must do, written once and run on each of them.
// A host offers `SoundPlayer& player()`.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/SoundPlayer.h"

namespace quillmere {

template <typename Host>
class SoundPlayerContract : public ::testing::Test {
 protected:
  Host host_;
};

TYPED_TEST_SUITE_P(SoundPlayerContract);

TYPED_TEST_P(SoundPlayerContract, KnowsTheTwoSoundsOfTheProgram) {
  EXPECT_TRUE(this->host_.player().play("Glass"));
  EXPECT_TRUE(this->host_.player().play("Hero"));
}

TYPED_TEST_P(SoundPlayerContract, KnowsNoOthers) {
  for (const std::string name : {"", "glass", "Basso", "Glass "}) EXPECT_FALSE(this->host_.player().play(name)) << name;
}

TYPED_TEST_P(SoundPlayerContract, SoundsMayOverlap) {
  for (int count = 0; count < 20; ++count) EXPECT_TRUE(this->host_.player().play("Glass"));
}

REGISTER_TYPED_TEST_SUITE_P(SoundPlayerContract, KnowsTheTwoSoundsOfTheProgram, KnowsNoOthers, SoundsMayOverlap);

}  // namespace quillmere
