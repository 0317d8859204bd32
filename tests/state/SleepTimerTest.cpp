// The sleep timer's walk of the master, in wall-clock time.
#include <limits>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SleepTimer : public StateFixture {
 protected:
  void SetUp() override {
    startWithThree();
    state().setMasterGain(0.8F);
    settle();
    forget();
  }
};

TEST_F(SleepTimer, TheMasterWalksDownLinearlyASecondAtATimeAndTheFirstStepIsAtOnce) {
  std::vector<float> steps;
  const auto watch = state().masterGain().observe([&](float gain) { steps.push_back(gain); });
  state().startSleepTimer(1);
  settle();
  EXPECT_THAT(steps, IsEmpty()) << "the first value is the start value";
  box->advanceSeconds(60);
  ASSERT_EQ(steps.size(), 60U);
  for (std::size_t second = 1; second < 60; ++second) {
    EXPECT_NEAR(steps[second - 1], 0.8 * (1.0 - static_cast<double>(second) / 60.0), 1e-5) << second;
  }
  EXPECT_EQ(steps.back(), 0.0F);
}

TEST_F(SleepTimer, ItsEndIsAWallClockDateThatTheViewsCountDownFrom) {
  state().startSleepTimer(30);
  EXPECT_EQ(*state().sleepTimerEndsAt(), box->time.now().advancedBy(1800.0));
}

TEST_F(SleepTimer, OnlyTheZeroAtTheEndIsStoredAndTheHardwareIsNeverDriven) {
  state().startSleepTimer(1);
  box->advanceSeconds(59);
  EXPECT_THAT(disk.written(), IsEmpty());
  box->advanceSeconds(1);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.masterGain"));
  EXPECT_EQ(disk.real("quillmere.masterGain"), 0.0);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.8F);
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(SleepTimer, NothingIsRestoredAtTheEnd) {
  state().startSleepTimer(1);
  box->advanceSeconds(600);
  EXPECT_EQ(*state().masterGain(), 0.0F);
}

TEST_F(SleepTimer, WithAMasterOfZeroTheFieldStaysZeroForTheWholeRun) {
  state().setMasterGain(0.0F);
  settle();
  int told = 0;
  const auto watch = state().masterGain().observe([&](float) { ++told; });
  state().startSleepTimer(1);
  box->advanceSeconds(61);
  EXPECT_EQ(told, 0);
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
}

TEST_F(SleepTimer, CancellingAtFortyPercentLeavesTheMasterAtSixtyPercentOfTheStart) {
  state().startSleepTimer(10);
  box->advanceSeconds(240);
  state().cancelSleepTimer();
  EXPECT_NEAR(*state().masterGain(), 0.48F, 1e-5);
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
  box->advanceSeconds(600);
  EXPECT_NEAR(*state().masterGain(), 0.48F, 1e-5);
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(SleepTimer, CancellingWithoutATimerDoesNothing) {
  state().cancelSleepTimer();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.8F);
}

TEST_F(SleepTimer, ARestartDuringAFadeBeginsAtTheLevelAlreadyReached) {
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  EXPECT_NEAR(*state().masterGain(), 0.4F, 1e-5);
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  EXPECT_NEAR(*state().masterGain(), 0.2F, 1e-5);
}

TEST_F(SleepTimer, ZeroAndNegativeMinutesFinishOnTheFirstPass) {
  for (const int minutes : {0, -5}) {
    state().setMasterGain(0.8F);
    settle();
    state().startSleepTimer(minutes);
    settle();
    EXPECT_EQ(*state().masterGain(), 0.0F);
    EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
  }
}

TEST_F(SleepTimer, AMachineThatSleptAcrossTheEndFinishesOnTheNextTick) {
  state().startSleepTimer(10);
  box->advanceSeconds(60);
  box->time.suspendMachine(3600);
  box->advanceSeconds(1);
  EXPECT_EQ(*state().masterGain(), 0.0F);
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
}

TEST_F(SleepTimer, AWallClockSetBackPutsTheMasterAtTheStartAndMakesTheRunLonger) {
  state().startSleepTimer(10);
  box->advanceSeconds(60);
  box->time.jumpWallClock(-600);
  box->advanceSeconds(1);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.8F);
  box->advanceSeconds(600);
  EXPECT_TRUE(state().sleepTimerEndsAt()->has_value());
  EXPECT_LT(*state().masterGain(), 0.8F);
  box->advanceSeconds(600);
  EXPECT_EQ(*state().masterGain(), 0.0F);
}

TEST_F(SleepTimer, AZeroMinuteTimerUnderAClockSetBackStaysAtTheStartValue) {
  state().startSleepTimer(0);
  box->time.jumpWallClock(-10);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.8F);
  box->advanceSeconds(11);
  EXPECT_EQ(*state().masterGain(), 0.0F);
}

TEST_F(SleepTimer, ASliderMovedDuringAFadeJumpsBackWithinASecondAndTheHardwareKeepsIt) {
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  state().setMasterGain(0.9F);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.9F);
  box->advanceSeconds(1);
  EXPECT_NEAR(*state().masterGain(), 0.8 * (1.0 - 301.0 / 600.0), 1e-5);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.9F);
}

TEST_F(SleepTimer, AChangeOfTheSystemVolumeIsOverwrittenOnTheNextTick) {
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  box->audio.setVolume(speakers, 0, 0.95F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.95F);
  box->advanceSeconds(1);
  EXPECT_LT(*state().masterGain(), 0.41F);
}

TEST_F(SleepTimer, WhisperDuringAFadeSavesAPointOfTheRampAndWritesItBackUntilTheNextTick) {
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  const float point = *state().masterGain();
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.1F);
  box->advanceSeconds(30);
  EXPECT_NEAR(*state().masterGain(), 0.8 * (1.0 - 330.0 / 600.0), 1e-5);
  state().toggleWhisperMode();
  EXPECT_EQ(*state().masterGain(), point);
  box->advanceSeconds(1);
  EXPECT_NEAR(*state().masterGain(), 0.8 * (1.0 - 331.0 / 600.0), 1e-5);
}

TEST_F(SleepTimer, ATimerStartedDuringWhisperStartsFromTheWhisperLevel) {
  state().toggleWhisperMode();
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  EXPECT_NEAR(*state().masterGain(), 0.05F, 1e-5);
}

TEST_F(SleepTimer, TheTimerIsLostWithTheProgram) {
  state().startSleepTimer(10);
  box->advanceSeconds(300);
  restart({});
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F) << "the new machine's hardware volume";
}

TEST_F(SleepTimer, ATimerOfAbsurdLengthNeitherOverflowsNorEnds) {
  state().startSleepTimer(std::numeric_limits<int>::max());
  box->advanceSeconds(60);
  EXPECT_NEAR(*state().masterGain(), 0.8F, 1e-4);
  EXPECT_TRUE(state().sleepTimerEndsAt()->has_value());
}

}  // namespace
}  // namespace quillmere
