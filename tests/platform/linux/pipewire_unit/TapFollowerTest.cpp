// The gain of streams that play beside their application's others.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "platform/linux/pipewire/TapFollower.h"

namespace quillmere::pipewire::test {
namespace {

constexpr std::size_t followedFrames = 480;

struct TapFollowerTest : ::testing::Test {
  std::shared_ptr<std::atomic<float>> target = std::make_shared<std::atomic<float>>(0.5F);
  TapFollower follower{target, 48000.0};
  std::array<float, 2 * followedFrames> input{};
  std::array<float, 2 * followedFrames> output{};

  TapFollowerTest() { input.fill(1.0F); }
  void cycle() {
    std::array<AudioBuffer, 1> in{AudioBuffer{2, sizeof(input), input.data()}};
    std::array<AudioBuffer, 1> out{AudioBuffer{2, sizeof(output), output.data()}};
    (*follower.block())(AudioBufferList{in}, AudioBufferList{out});
  }
};

TEST_F(TapFollowerTest, ItBeginsAtTheGainThatIsSet) {
  cycle();
  for (const float sample : output) EXPECT_EQ(sample, 0.5F);
}

TEST_F(TapFollowerTest, ItGlidesToANewGainWithATimeConstantOfThirtyMilliseconds) {
  target->store(0.0F);
  for (int i = 0; i < 3; ++i) cycle();
  EXPECT_NEAR(follower.gain(), 0.5F * std::exp(-1.0F), 0.001F);
  EXPECT_NEAR(output.back(), follower.gain(), 1e-6F);
}

TEST_F(TapFollowerTest, ItKeepsItsTimeAtAnotherRate) {
  follower.setRate(96000.0);
  target->store(0.0F);
  for (int i = 0; i < 6; ++i) cycle();
  EXPECT_NEAR(follower.gain(), 0.5F * std::exp(-1.0F), 0.001F);
}

TEST_F(TapFollowerTest, ItArrives) {
  target->store(0.0F);
  for (int i = 0; i < 100; ++i) cycle();
  EXPECT_EQ(follower.gain(), 0.0F);
  cycle();
  for (const float sample : output) EXPECT_EQ(sample, 0.0F);
}

}  // namespace
}  // namespace quillmere::pipewire::test
