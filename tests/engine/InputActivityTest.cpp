// When a tap counts as hearing sound: while cycles write a peak above the threshold, and no longer.
#include "engine/InputActivity.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace quillmere {
namespace {

using namespace std::chrono_literals;

struct InputActivityTest : testing::Test {
  std::shared_ptr<IOWords> words = std::make_shared<IOWords>();
  InputActivity activity{words};
  MonotonicTime now{};

  /// One IO cycle of a constant input.
  void cycle(float sample) const {
    std::array<float, 32> input{};
    std::array<float, 32> output{};
    input.fill(sample);
    AudioBuffer in{2, sizeof input, input.data()};
    AudioBuffer out{2, sizeof output, output.data()};
    processIO({.buffers = {&in, 1}}, {.buffers = {&out, 1}}, 0.1F, *words);
  }
  bool isHeardAfter(Duration pause) {
    now += pause;
    return activity.isHeard(now);
  }
};

TEST_F(InputActivityTest, NothingIsHeardBeforeTheFirstCycle) { EXPECT_FALSE(isHeardAfter(150ms)); }

TEST_F(InputActivityTest, WhatWasWrittenBeforeItBeganIsNotHeard) {
  cycle(0.5F);
  InputActivity later(words);
  EXPECT_FALSE(later.isHeard(now));
}

TEST_F(InputActivityTest, SoundIsHeardAtTheFirstLookAfterItsCycle) {
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(150ms));
}

TEST_F(InputActivityTest, SilentCyclesAreNotHeard) {
  cycle(0.0F);
  EXPECT_FALSE(isHeardAfter(150ms));
}

TEST_F(InputActivityTest, AtTheFirstPollWithoutACycleNothingIsHeardAnyMore) {
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(150ms));
  EXPECT_FALSE(isHeardAfter(150ms));
  EXPECT_EQ(words->recentInputPeak, 0.5F) << "the peak stands: it decays in cycles only";
}

TEST_F(InputActivityTest, SoundThatGoesOnIsHeardAtOnceAgain) {
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(150ms));
  EXPECT_FALSE(isHeardAfter(1h));
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(1ms));
}

TEST_F(InputActivityTest, TwoLooksInQuickSuccessionGiveTheSameAnswer) {
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(150ms));
  EXPECT_TRUE(isHeardAfter(1ms));
  EXPECT_TRUE(isHeardAfter(98ms));
  EXPECT_FALSE(isHeardAfter(1ms));
}

TEST_F(InputActivityTest, ACycleThatBringsNoSamplesDoesNotKeepAPeakAlive) {
  cycle(0.5F);
  EXPECT_TRUE(isHeardAfter(150ms));
  // What has no data writes no peak.
  processIO({}, {}, 0.1F, *words);
  EXPECT_FALSE(isHeardAfter(150ms));
}

TEST_F(InputActivityTest, TheCountOfPeaksMayWrapAround) {
  words->peaksWritten = 0xffffffffU;
  InputActivity fresh(words);
  cycle(0.5F);
  EXPECT_EQ(words->peaksWritten, 0U);
  EXPECT_TRUE(fresh.isHeard(now));
}

/// Cycles of 170 ms, which a host may choose, and a poll of 150 ms: between two polls there may be none.
TEST_F(InputActivityTest, CyclesLongerThanThePollAreHeardAtEveryOtherPollAtLeast) {
  int missedInARow = 0;
  Duration nextCycle{};
  for (Duration poll{}; poll < 60s; poll += 150ms) {
    for (; nextCycle <= poll; nextCycle += 170ms) cycle(0.5F);
    missedInARow = activity.isHeard(MonotonicTime(poll)) ? 0 : missedInARow + 1;
    ASSERT_LE(missedInARow, 1) << "at " << poll.count() / 1000000 << " ms";
  }
}

}  // namespace
}  // namespace quillmere
