// What counts as the default output while the session manager says nothing, or not yet what was asked for.
#include "platform/linux/pipewire/DefaultOutput.h"

#include <gtest/gtest.h>

namespace quillmere::pipewire::test {
namespace {

using namespace std::chrono_literals;
using Outcome = DefaultOutput::Outcome;

struct DefaultOutputTest : ::testing::Test {
  DefaultOutput output;
  DefaultOutput::Facts facts{true, "headset", "headset", {"headset", "speakers"}};
  MonotonicTime now{std::chrono::hours(1)};

  DefaultOutput::Verdict judge() { return output.judge(facts, now); }
  std::optional<std::string> name() { return judge().name; }
  DefaultOutput::Verdict after(Duration time) {
    now += time;
    return judge();
  }
  /// Asks again only when the last verdict says so; what counts in the end, and when.
  std::optional<std::string> inTheEnd() {
    auto verdict = judge();
    for (int questions = 0; verdict.validUntil; ++questions) {
      EXPECT_LT(questions, 20) << "it asks to be asked for ever";
      EXPECT_GT(*verdict.validUntil, now);
      now = *verdict.validUntil;
      verdict = judge();
    }
    return verdict.name;
  }
  void loseSessionManager() {
    facts.hasSessionManager = false;
    facts.told.reset();
    facts.onRecord.reset();
  }
  void loseDaemon() {
    loseSessionManager();
    facts.outputs.clear();
  }
};

TEST_F(DefaultOutputTest, TheSessionManagersWordCountsAtOnce) {
  EXPECT_EQ(name(), "headset");
  facts.told = "speakers";
  EXPECT_EQ(name(), "speakers");
  EXPECT_FALSE(judge().validUntil);
}

TEST_F(DefaultOutputTest, WhileTheSessionManagerStartsAnewTheDummyThatStoodInIsNotHeld) {
  judge();
  loseSessionManager();
  facts.outputs = {"auto_null"};
  const auto verdict = judge();
  EXPECT_TRUE(verdict.holds("headset"));
  EXPECT_FALSE(verdict.holds("auto_null"));
}

TEST_F(DefaultOutputTest, ADeviceThatIsNotThereIsNoDefaultAtTheStart) {
  facts.outputs = {"speakers"};
  EXPECT_EQ(name(), std::nullopt);
}

// The default goes.

TEST_F(DefaultOutputTest, ADefaultThatGoesStaysUntilTheNextIsTold) {
  judge();
  facts.outputs.erase("headset");
  EXPECT_EQ(name(), "headset");
  facts.told.reset();
  EXPECT_EQ(name(), "headset");
  facts.told = "speakers";
  EXPECT_EQ(name(), "speakers");
}

TEST_F(DefaultOutputTest, WhereNoneFollowsThereIsNoneInTheEnd) {
  judge();
  facts.outputs.erase("headset");
  const auto start = now;
  EXPECT_EQ(inTheEnd(), std::nullopt);
  EXPECT_EQ(now - start, DefaultOutput::longestGap);
}

TEST_F(DefaultOutputTest, TheDummyThatStandsInForADeviceIsNoWordUntilItIsAllThereIs) {
  judge();
  facts = {true, "auto_null", "headset", {"auto_null"}};
  EXPECT_EQ(name(), "headset");
  facts.outputs.insert("other");
  facts.told = "other";
  EXPECT_EQ(name(), "other");
  facts = {true, "auto_null", "headset", {"auto_null"}};
  EXPECT_EQ(inTheEnd(), "auto_null");
  EXPECT_EQ(name(), "auto_null");
}

TEST_F(DefaultOutputTest, EveryGapHasItsOwnTime) {
  judge();
  facts.outputs.erase("headset");
  judge();
  EXPECT_EQ(after(DefaultOutput::longestGap - 1ms).name, "headset");
  facts.outputs.insert("headset");
  judge();
  facts.outputs.erase("headset");
  judge();
  EXPECT_EQ(after(DefaultOutput::longestGap - 1ms).name, "headset");
}

// Restarts.

TEST_F(DefaultOutputTest, OverARestartOfTheSessionManagerTheDefaultAndTheDevicesStay) {
  judge();
  loseSessionManager();
  EXPECT_EQ(name(), "headset");
  EXPECT_TRUE(judge().holdsDevices);
  facts.outputs.clear();
  EXPECT_EQ(after(1s).name, "headset");
  facts.hasSessionManager = true;
  facts.outputs = {"speakers"};
  facts.told = "speakers";
  EXPECT_EQ(name(), "headset") << "it has not met the headset yet";
  facts.outputs.insert("headset");
  facts.told = "headset";
  EXPECT_EQ(name(), "headset");
  EXPECT_EQ(inTheEnd(), "headset");
  EXPECT_FALSE(judge().holdsDevices);
}

TEST_F(DefaultOutputTest, OverARestartOfTheDaemonTheDefaultAndTheDevicesStay) {
  judge();
  loseDaemon();
  EXPECT_EQ(name(), "headset");
  EXPECT_TRUE(judge().holdsDevices);
  facts = {true, "headset", "headset", {"headset", "speakers"}};
  EXPECT_EQ(after(3s).name, "headset");
  EXPECT_EQ(inTheEnd(), "headset");
}

TEST_F(DefaultOutputTest, ADeviceThatARestartHasCostIsGoneOnceTheOthersHaveSettled) {
  judge();
  loseDaemon();
  judge();
  facts = {true, "speakers", "headset", {"speakers"}};
  judge();
  const auto start = now;
  facts.outputs.insert("screen");
  now += 500ms;
  EXPECT_EQ(inTheEnd(), "speakers");
  EXPECT_EQ(now - start, 500ms + DefaultOutput::settlingTime);
  EXPECT_FALSE(judge().holdsDevices);
}

TEST_F(DefaultOutputTest, AfterARestartAWordIsBelievedAtOnceWhereTheDefaultIsBackAlready) {
  judge();
  loseSessionManager();
  judge();
  facts = {true, "headset", "headset", {"headset", "speakers"}};
  judge();
  facts.told = "speakers";
  EXPECT_EQ(name(), "speakers");
}

TEST_F(DefaultOutputTest, ADaemonThatStaysAwayTakesTheDefaultAndTheDevicesWithIt) {
  judge();
  loseDaemon();
  const auto start = now;
  EXPECT_EQ(inTheEnd(), std::nullopt);
  EXPECT_EQ(now - start, DefaultOutput::longestGap);
  EXPECT_FALSE(judge().holdsDevices);
}

TEST_F(DefaultOutputTest, ASecondRestartWithinTheFirstHasItsOwnTime) {
  judge();
  loseDaemon();
  judge();
  now += 5s;
  facts = {true, "headset", "headset", {"headset"}};
  judge();
  loseDaemon();
  judge();
  EXPECT_EQ(after(5s).name, "headset");
}

TEST_F(DefaultOutputTest, TheDummyOfARestartIsNoWord) {
  judge();
  loseSessionManager();
  judge();
  facts = {true, "auto_null", "headset", {"auto_null"}};
  EXPECT_EQ(after(3s).name, "headset");
  EXPECT_TRUE(judge().holdsDevices);
  facts = {true, "headset", "headset", {"headset", "speakers"}};
  EXPECT_EQ(name(), "headset");
}

TEST_F(DefaultOutputTest, BeforeTheFirstSessionManagerNothingIsHeld) {
  loseDaemon();
  EXPECT_FALSE(judge().holdsDevices);
  EXPECT_FALSE(judge().validUntil && *judge().validUntil <= now);
  EXPECT_EQ(name(), std::nullopt);
}

// Choices.

TEST_F(DefaultOutputTest, AChoiceCountsAtOnceAndIsTakenWhenItIsTold) {
  judge();
  output.choose("speakers", now);
  auto verdict = judge();
  EXPECT_EQ(verdict.name, "speakers");
  EXPECT_TRUE(verdict.isAwaited);
  facts.onRecord = "speakers";
  EXPECT_EQ(judge().outcome, Outcome::none);
  facts.told = "speakers";
  verdict = judge();
  EXPECT_EQ(verdict.outcome, Outcome::taken);
  EXPECT_FALSE(verdict.isAwaited);
  EXPECT_EQ(verdict.name, "speakers");
  EXPECT_EQ(judge().outcome, Outcome::none) << "told once";
}

TEST_F(DefaultOutputTest, ASessionManagerThatHangsIsWaitedFor) {
  judge();
  output.choose("speakers", now);
  for (int second = 0; second < 29; ++second) {
    const auto verdict = after(1s);
    ASSERT_EQ(verdict.name, "speakers");
    ASSERT_EQ(verdict.outcome, Outcome::none);
  }
  facts.onRecord = facts.told = "speakers";
  EXPECT_EQ(judge().outcome, Outcome::taken);
}

TEST_F(DefaultOutputTest, OneThatNeverAnswersHasRefused) {
  judge();
  output.choose("speakers", now);
  const auto start = now;
  EXPECT_EQ(inTheEnd(), "headset");
  EXPECT_EQ(now - start, DefaultOutput::longestSilence);
}

TEST_F(DefaultOutputTest, WhatIsOnRecordAndNotFollowedIsRefused) {
  judge();
  output.choose("speakers", now);
  facts.onRecord = "speakers";
  EXPECT_EQ(judge().outcome, Outcome::none);
  EXPECT_EQ(after(DefaultOutput::decisionTime - 1ms).outcome, Outcome::none);
  const auto verdict = after(1ms);
  EXPECT_EQ(verdict.outcome, Outcome::refused);
  EXPECT_EQ(verdict.refused, "speakers");
  EXPECT_EQ(verdict.name, "headset");
  EXPECT_FALSE(verdict.isAwaited);
  EXPECT_EQ(judge().outcome, Outcome::none) << "told once";
}

TEST_F(DefaultOutputTest, AChoiceThatSomebodyElseReplacesIsRefused) {
  judge();
  output.choose("speakers", now);
  facts.onRecord = "speakers";
  judge();
  facts.onRecord = "headset";
  EXPECT_EQ(judge().outcome, Outcome::refused);
}

TEST_F(DefaultOutputTest, AChosenDeviceThatGoesIsRefusedAndTheOldDefaultCounts) {
  judge();
  output.choose("speakers", now);
  facts.outputs.erase("speakers");
  const auto verdict = judge();
  EXPECT_EQ(verdict.outcome, Outcome::refused);
  EXPECT_EQ(verdict.name, "headset");
}

TEST_F(DefaultOutputTest, ALaterChoiceReplacesAnEarlierOneWhoseAnswerIsNoNews) {
  facts.outputs.insert("screen");
  judge();
  output.choose("speakers", now);
  judge();
  output.choose("screen", now);
  facts.onRecord = facts.told = "speakers";
  auto verdict = judge();
  EXPECT_EQ(verdict.name, "screen");
  EXPECT_EQ(verdict.outcome, Outcome::none);
  facts.onRecord = facts.told = "screen";
  EXPECT_EQ(judge().name, "screen");
  EXPECT_EQ(after(DefaultOutput::decisionTime).outcome, Outcome::taken);
}

TEST_F(DefaultOutputTest, ThereAndBackAgainTheStepsOfTheSessionManagerAreNoNews) {
  judge();
  output.choose("speakers", now);
  judge();
  output.choose("headset", now);
  EXPECT_EQ(judge().outcome, Outcome::none);
  facts.onRecord = facts.told = "speakers";
  EXPECT_EQ(judge().name, "headset");
  facts.onRecord = facts.told = "headset";
  EXPECT_EQ(judge().name, "headset");
  EXPECT_EQ(after(DefaultOutput::decisionTime).outcome, Outcome::taken);
}

TEST_F(DefaultOutputTest, AChoiceOutlivesARestartAndIsAnsweredByTheSuccessor) {
  judge();
  output.choose("speakers", now);
  loseSessionManager();
  auto verdict = judge();
  EXPECT_EQ(verdict.name, "speakers");
  EXPECT_EQ(verdict.outcome, Outcome::none);
  facts = {true, "headset", "headset", {"headset", "speakers"}};
  EXPECT_EQ(judge().name, "speakers");
  verdict = after(DefaultOutput::settlingTime);
  EXPECT_EQ(verdict.name, "headset");
}

TEST_F(DefaultOutputTest, WithoutASuccessorAChoiceIsRefused) {
  judge();
  output.choose("speakers", now);
  loseDaemon();
  judge();
  const auto verdict = after(DefaultOutput::longestGap);
  EXPECT_EQ(verdict.outcome, Outcome::refused);
  EXPECT_EQ(verdict.name, std::nullopt);
}

}  // namespace
}  // namespace quillmere::pipewire::test
