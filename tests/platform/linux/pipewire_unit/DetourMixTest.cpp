// What a detour makes of the sound, to the sample.
#include "platform/linux/pipewire/DetourMix.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace quillmere::pipewire::test {
namespace {

constexpr std::size_t mixedFrames = 64;
using Samples = std::array<float, mixedFrames>;

Samples tone(float amplitude, float step) {
  Samples samples{};
  for (std::size_t frame = 0; frame < mixedFrames; ++frame) {
    samples[frame] = amplitude * std::sin(step * static_cast<float>(frame));
  }
  return samples;
}

struct DetourMixTest : ::testing::Test {
  DetourMix mix{{leftShare, rightShare}};
  Samples one = tone(0.7F, 0.31F);
  Samples other = tone(0.4F, 0.77F);
  Samples inverseOne{}, inverseOther{}, left{}, right{};
  std::array<const float*, 2> inputs{one.data(), other.data()};
  std::array<float*, 2> inverses{inverseOne.data(), inverseOther.data()};

  void cycle() {
    for (auto* samples : {&inverseOne, &inverseOther, &left, &right}) samples->fill(9.0F);
    mix.process({inputs, inverses, left.data(), right.data(), mixedFrames, 48000.0});
  }
  void glide() {
    for (int number = 0; number < 5; ++number) cycle();
  }
};

TEST_F(DetourMixTest, ClosedItPlaysNothing) {
  cycle();
  for (const auto* samples : {&inverseOne, &inverseOther, &left, &right}) EXPECT_EQ(*samples, Samples{});
  EXPECT_TRUE(mix.isClosed());
}

TEST_F(DetourMixTest, OpenItCancelsToTheLastBitAndHandsEverythingOn) {
  mix.setOpen(true);
  glide();
  for (std::size_t frame = 0; frame < mixedFrames; ++frame) {
    EXPECT_EQ(one[frame] + inverseOne[frame], 0.0F);
    EXPECT_EQ(other[frame] + inverseOther[frame], 0.0F);
  }
  EXPECT_EQ(left, one);
  EXPECT_EQ(right, other);
  EXPECT_FALSE(mix.isClosed());
}

TEST_F(DetourMixTest, OnTheWayNothingIsLostOrDoubled) {
  mix.setOpen(true);
  float before = 0.0F;
  for (int number = 0; number < 4; ++number) {
    one.fill(0.5F);
    cycle();
    for (std::size_t frame = 0; frame < mixedFrames; ++frame) {
      EXPECT_FLOAT_EQ(one[frame] + inverseOne[frame] + left[frame], one[frame]);
      // Evenly, over 240 frames.
      EXPECT_NEAR(left[frame] - before, before == one[frame] ? 0.0F : 0.5F / 240.0F, 1e-6F);
      before = left[frame];
    }
  }
  EXPECT_EQ(before, 0.5F);
}

TEST_F(DetourMixTest, ItClosesAsEvenly) {
  mix.setOpen(true);
  glide();
  one.fill(0.5F);
  cycle();
  mix.setOpen(false);
  EXPECT_FALSE(mix.isClosed());
  float before = 0.5F;
  for (int number = 0; number < 4; ++number) {
    cycle();
    for (std::size_t frame = 0; frame < mixedFrames; ++frame) {
      EXPECT_NEAR(before - left[frame], before == 0.0F ? 0.0F : 0.5F / 240.0F, 1e-6F);
      EXPECT_FLOAT_EQ(one[frame] + inverseOne[frame] + left[frame], one[frame]);
      before = left[frame];
    }
  }
  EXPECT_TRUE(mix.isClosed());
  EXPECT_EQ(inverseOne.back(), 0.0F);
}

TEST_F(DetourMixTest, ReopenedOnTheWayItTurnsRound) {
  mix.setOpen(true);
  one.fill(0.5F);
  cycle();
  const float reached = left.back();
  EXPECT_GT(reached, 0.0F);
  mix.setOpen(false);
  mix.process({inputs, inverses, left.data(), right.data(), 1, 48000.0});
  EXPECT_LT(left.front(), reached);
  EXPECT_NEAR(left.front(), reached, 0.5F / 200.0F);
}

TEST_F(DetourMixTest, AnInputWithoutALinkIsSilent) {
  mix.setOpen(true);
  glide();
  inputs[1] = nullptr;
  cycle();
  EXPECT_EQ(inverseOther, Samples{});
  EXPECT_EQ(right, Samples{});
  EXPECT_EQ(left, one);
}

TEST_F(DetourMixTest, AnOutputWithoutALinkIsLeftAlone) {
  mix.setOpen(true);
  glide();
  inverses[0] = nullptr;
  mix.process({inputs, inverses, nullptr, right.data(), mixedFrames, 48000.0});
  EXPECT_EQ(right, other);
}

TEST(DetourMix, ASurroundDeviceIsMixedToTwoAndCancelledPortByPort) {
  constexpr ChannelShare centre{0.5F, 0.5F};
  DetourMix mix({leftShare, rightShare, centre});
  mix.setOpen(true);
  const std::array<float, 3> levels{0.25F, -0.5F, 1.0F};
  std::array<float, 3> inverse{};
  std::array<const float*, 3> inputs{levels.data(), &levels[1], &levels[2]};
  std::array<float*, 3> inverses{inverse.data(), &inverse[1], &inverse[2]};
  float left = 0.0F;
  float right = 0.0F;
  for (int frame = 0; frame < 300; ++frame) mix.process({inputs, inverses, &left, &right, 1, 48000.0});
  EXPECT_EQ(inverse, (std::array<float, 3>{-0.25F, 0.5F, -1.0F}));
  EXPECT_EQ(left, 0.75F);
  EXPECT_EQ(right, 0.0F);
}

TEST(DetourMix, TheGlideTakesFiveMillisecondsAtAnyRate) {
  for (const double rate : {44100.0, 48000.0, 192000.0}) {
    DetourMix mix({leftShare});
    mix.setOpen(true);
    const float level = 1.0F;
    float inverse = 0.0F;
    float left = 0.0F;
    float right = 0.0F;
    const std::array<const float*, 1> inputs{&level};
    const std::array<float*, 1> inverses{&inverse};
    int count = 0;
    while (left < 1.0F && count < 2000) {
      mix.process({inputs, inverses, &left, &right, 1, rate});
      ++count;
    }
    EXPECT_NEAR(count / rate, 0.005, 0.0001);
  }
}

}  // namespace
}  // namespace quillmere::pipewire::test
