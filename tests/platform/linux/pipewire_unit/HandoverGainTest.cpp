// The glides of a handover, and the real-time part that runs them.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

#include "platform/linux/pipewire/HandoverGain.h"
#include "platform/linux/pipewire/TapRealtime.h"

namespace quillmere::pipewire::test {
namespace {

constexpr std::uint32_t cycleFrames = 256;

struct Buffers {
  std::vector<float> input = std::vector<float>(std::size_t{2} * cycleFrames, 1.0F);
  std::vector<float> output = std::vector<float>(std::size_t{2} * cycleFrames, 9.0F);
};

/// What a constant of one becomes over so many frames.
std::vector<float> run(TapRealtime& tap, std::uint32_t count, float value = 1.0F) {
  std::vector<float> heard;
  Buffers buffers;
  std::fill(buffers.input.begin(), buffers.input.end(), value);
  for (std::uint32_t done = 0; done < count; done += cycleFrames) {
    tap.process(buffers.input.data(), buffers.output.data(), cycleFrames);
    for (std::uint32_t i = 0; i < cycleFrames; ++i) heard.push_back(buffers.output[std::size_t{2} * i]);
  }
  return heard;
}

IOBlock blockWithGain(float gain) {
  return [gain](const AudioBufferList& input, const AudioBufferList& output) {
    const auto count = input.buffers[0].byteCount / sizeof(float);
    for (std::uint32_t i = 0; i < count; ++i) output.buffers[0].data[i] = gain * input.buffers[0].data[i];
  };
}

TEST(HandoverGain, TimeConstantIsThirtyMilliseconds) {
  const double perFrame = 1.0 - HandoverGain::coefficient(48000.0);
  EXPECT_NEAR(std::pow(perFrame, 48000.0 * 0.03), std::exp(-1.0), 1e-3);
  EXPECT_EQ(HandoverGain::coefficient(0.0), HandoverGain::coefficient(8000.0));
}

TEST(TapRealtime, BeforeAStartThereIsSilence) {
  TapRealtime tap;
  EXPECT_EQ(run(tap, cycleFrames), std::vector<float>(cycleFrames, 0.0F));
}

TEST(TapRealtime, APlainStartPlaysTheBlockFromTheFirstFrame) {
  TapRealtime tap;
  const auto block = blockWithGain(0.25F);
  tap.startPlain(&block);
  EXPECT_EQ(run(tap, cycleFrames), std::vector<float>(cycleFrames, 0.25F));
}

TEST(TapRealtime, ABlockThatWritesNothingIsSilent) {
  TapRealtime tap;
  const IOBlock block = [](const AudioBufferList&, const AudioBufferList&) {};
  tap.startPlain(&block);
  EXPECT_EQ(run(tap, cycleFrames), std::vector<float>(cycleFrames, 0.0F));
}

TEST(TapRealtime, AGlideBeginsAtTheGainOfBeforeAndEndsAtTheBlocks) {
  TapRealtime tap;
  const auto block = blockWithGain(0.0F);
  tap.startFrom(&block, 1.0F);
  const auto heard = run(tap, 48000);
  EXPECT_NEAR(heard.front(), 1.0F, 0.001F);
  EXPECT_NEAR(heard[1440], std::exp(-1.0F), 0.005F);
  EXPECT_EQ(heard.back(), 0.0F);
  for (std::size_t i = 1; i < heard.size(); ++i) ASSERT_LE(heard[i - 1] - heard[i], 0.0008F);
}

TEST(TapRealtime, AGlideWaitsForTheFirstSound) {
  TapRealtime tap;
  const auto block = blockWithGain(0.0F);
  tap.startFrom(&block, 1.0F);
  run(tap, 2048, 0.0F);
  EXPECT_NEAR(run(tap, cycleFrames).front(), 1.0F, 0.001F);
}

TEST(TapRealtime, AGlideThatHasWaitedTooLongIsDropped) {
  TapRealtime tap;
  const auto block = blockWithGain(0.25F);
  tap.startFrom(&block, 1.0F);
  run(tap, 12000, 0.0F);
  EXPECT_EQ(run(tap, cycleFrames), std::vector<float>(cycleFrames, 0.25F));
}

TEST(TapRealtime, AtTheSameGainAGlideChangesNothing) {
  TapRealtime tap;
  const auto block = blockWithGain(1.0F);
  tap.startFrom(&block, 1.0F);
  for (const float value : run(tap, 4800)) ASSERT_NEAR(value, 1.0F, 1e-6F);
}

TEST(TapRealtime, AReleaseHoldsThenGlidesToUnityAndSaysSo) {
  TapRealtime tap;
  const auto block = blockWithGain(0.2F);
  tap.startPlain(&block);
  run(tap, cycleFrames);
  tap.stop(0.2F);
  const auto heard = run(tap, 24000);
  EXPECT_EQ(heard[2399], 0.2F);
  EXPECT_GT(heard[2400], 0.2F);
  EXPECT_EQ(heard.back(), 1.0F);
  EXPECT_TRUE(tap.isAtUnity());
  for (std::size_t i = 1; i < heard.size(); ++i) ASSERT_LE(std::fabs(heard[i] - heard[i - 1]), 0.001F);
}

TEST(TapRealtime, AHeldReleaseStaysWhereItIsAndGoesOnFromThere) {
  TapRealtime tap;
  const auto block = blockWithGain(0.2F);
  tap.startPlain(&block);
  run(tap, cycleFrames);
  tap.stop(0.2F);
  const float last = run(tap, 4096).back();
  tap.hold();
  const auto held = run(tap, 48000);
  EXPECT_EQ(held, std::vector<float>(held.size(), last));
  tap.stop(tap.releaseGain());
  EXPECT_EQ(run(tap, 24000).back(), 1.0F);
}

TEST(TapRealtime, AReleaseThatNoCycleHasSeenIsHeldAtTheGainItWasGiven) {
  TapRealtime tap;
  const auto block = blockWithGain(0.2F);
  tap.startPlain(&block);
  run(tap, cycleFrames);
  tap.stop(0.2F);
  tap.hold();
  EXPECT_EQ(run(tap, cycleFrames), std::vector<float>(cycleFrames, 0.2F));
}

TEST(TapRealtime, AReleaseThatNoCycleHasSeenIsTakenUpAtTheGainItWasGiven) {
  TapRealtime tap;
  const auto quiet = blockWithGain(0.2F);
  const auto loud = blockWithGain(0.9F);
  tap.startPlain(&quiet);
  run(tap, cycleFrames);
  tap.stop(0.2F);
  tap.startFromRelease(&loud);
  EXPECT_NEAR(run(tap, cycleFrames).front(), 0.2F, 0.001F);
}

TEST(TapRealtime, AReleaseAtUnityIsThereAtOnce) {
  TapRealtime tap;
  const auto block = blockWithGain(1.0F);
  tap.startPlain(&block);
  run(tap, cycleFrames);
  tap.stop(1.0F);
  EXPECT_FALSE(tap.isAtUnity());
  run(tap, cycleFrames);
  EXPECT_TRUE(tap.isAtUnity());
}

TEST(TapRealtime, AReleaseInTheMiddleOfAGlideGoesOnFromWhatIsHeard) {
  TapRealtime tap;
  const auto block = blockWithGain(0.0F);
  tap.startFrom(&block, 1.0F);
  const float last = run(tap, 1024).back();
  tap.stop(0.0F);
  EXPECT_NEAR(run(tap, cycleFrames).front(), last, 0.001F);
}

TEST(TapRealtime, AnAdoptedTapGoesOnFromItsOwnRelease) {
  TapRealtime tap;
  const auto block = blockWithGain(0.2F);
  tap.startPlain(&block);
  run(tap, cycleFrames);
  tap.stop(0.2F);
  const float last = run(tap, 4096).back();
  EXPECT_FLOAT_EQ(tap.releaseGain(), last);
  tap.startFromRelease(&block);
  const auto heard = run(tap, 48000);
  EXPECT_NEAR(heard.front(), last, 0.001F);
  EXPECT_NEAR(heard.back(), 0.2F, 1e-6F);
}

TEST(TapRealtime, NoCallOfTheBlockFollowsTheReturnOfStop) {
  for (int round = 0; round < 50; ++round) {
    TapRealtime tap;
    std::atomic<bool> isStopped{false};
    std::atomic<bool> wasCalled{false};
    std::atomic<bool> isOver{false};
    const IOBlock block = [&](const AudioBufferList&, const AudioBufferList&) {
      if (isStopped) wasCalled = true;
    };
    std::thread audio([&] {
      Buffers buffers;
      while (!isOver) tap.process(buffers.input.data(), buffers.output.data(), cycleFrames);
    });
    tap.startPlain(&block);
    while (tap.cycles() < 2) std::this_thread::yield();
    tap.stop(1.0F);
    isStopped = true;
    const auto seen = tap.cycles();
    while (tap.cycles() < seen + 2) std::this_thread::yield();
    isOver = true;
    audio.join();
    ASSERT_FALSE(wasCalled);
  }
}

}  // namespace
}  // namespace quillmere::pipewire::test
