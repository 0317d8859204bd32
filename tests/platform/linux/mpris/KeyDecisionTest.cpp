// What a media key calls: every purpose against every state of the players.
#include "platform/linux/mpris/KeyDecision.h"

#include <gtest/gtest.h>

namespace quillmere::mpris {
namespace {

using mediakey::Purpose;

class KeyDecision : public ::testing::Test {
 protected:
  Player& add(const std::string& name, PlaybackStatus status) {
    auto& player = players_[name];
    player.busName = name;
    player.discovered = players_.size();
    turn(player, status);
    return player;
  }
  void turn(Player& player, PlaybackStatus status) {
    if (status == PlaybackStatus::playing) player.lastPlayed = ++playSequence_;
    player.status = status;
  }
  std::string press(std::int32_t key, Purpose purpose) {
    const auto call = decideKey(key, purpose, shown_, players_, pausedRun_);
    return call ? call->busName + "." + call->method : "";
  }
  std::string pause() { return press(mediakey::play, Purpose::pause); }
  std::string resume() { return press(mediakey::play, Purpose::resume); }
  std::string person(std::int32_t key = mediakey::play) { return press(key, Purpose::person); }

  Players players_;
  std::string shown_;
  std::uint64_t pausedRun_ = 0;
  std::uint64_t playSequence_ = 0;
};

TEST_F(KeyDecision, WhatPlaysIsPausedAndResumed) {
  auto& player = add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::paused);
  EXPECT_EQ(resume(), "a.Play");
  EXPECT_EQ(resume(), "") << "once";
}

TEST_F(KeyDecision, WhatDoesNotPlayIsNeitherPausedNorStartedByAPause) {
  EXPECT_EQ(pause(), "");
  add("a", PlaybackStatus::paused);
  EXPECT_EQ(pause(), "");
  add("b", PlaybackStatus::stopped);
  EXPECT_EQ(pause(), "");
}

TEST_F(KeyDecision, APauseThatSomebodyElseMadeIsNotResumed) {
  add("a", PlaybackStatus::paused);
  EXPECT_EQ(pause(), "");
  EXPECT_EQ(resume(), "");
}

TEST_F(KeyDecision, ASecondPauseBeforeThePlayerAnswersIsAPauseToo) {
  add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  EXPECT_EQ(pause(), "a.Pause");
}

TEST_F(KeyDecision, ASecondPauseAfterThePlayerHasAnsweredKeepsWhatIsToBeResumed) {
  auto& player = add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::paused);
  EXPECT_EQ(pause(), "");
  EXPECT_EQ(resume(), "a.Play");
}

TEST_F(KeyDecision, APlayerThatStopsAndForgetsItsTrackIsResumedAllTheSame) {
  auto& player = add("a", PlaybackStatus::playing);
  player.track.title = "Song";
  shown_ = "a";
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::stopped);
  player.track = {};
  shown_ = "";
  EXPECT_EQ(resume(), "a.Play");
}

TEST_F(KeyDecision, WhatHasBegunElsewhereKeepsTheOldPlayerQuiet) {
  auto& player = add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::paused);
  add("b", PlaybackStatus::playing);
  EXPECT_EQ(resume(), "");
}

TEST_F(KeyDecision, WhatHasBegunAgainByItselfIsLeftPlaying) {
  auto& player = add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::paused);
  turn(player, PlaybackStatus::playing);
  EXPECT_EQ(resume(), "");
}

TEST_F(KeyDecision, WhatAPersonHasPausedInBetweenStaysPaused) {
  auto& player = add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  turn(player, PlaybackStatus::paused);
  turn(player, PlaybackStatus::playing);
  turn(player, PlaybackStatus::paused);
  EXPECT_EQ(resume(), "");
}

TEST_F(KeyDecision, APlayerThatHasGoneIsNotResumedNorIsAnotherNorTheNextOfItsName) {
  add("a", PlaybackStatus::playing);
  EXPECT_EQ(pause(), "a.Pause");
  players_.clear();
  add("a", PlaybackStatus::paused);
  add("b", PlaybackStatus::paused);
  EXPECT_EQ(resume(), "");
}

TEST_F(KeyDecision, OfSeveralThatPlayTheLatestToBeginIsPausedAndResumed) {
  add("a", PlaybackStatus::playing);
  auto& player = add("b", PlaybackStatus::playing);
  auto& first = players_.at("a");
  EXPECT_EQ(pause(), "b.Pause");
  turn(player, PlaybackStatus::paused);
  turn(first, PlaybackStatus::paused);
  EXPECT_EQ(resume(), "b.Play");
}

TEST_F(KeyDecision, APersonsPressOfThePlayKeyIsAToggleEachTime) {
  add("a", PlaybackStatus::playing);
  EXPECT_EQ(person(), "a.PlayPause");
  EXPECT_EQ(person(), "a.PlayPause") << "whatever the player has told of the first";
}

TEST_F(KeyDecision, APersonsPressIsForThePlayerShown) {
  add("a", PlaybackStatus::paused);
  add("b", PlaybackStatus::playing);
  for (const auto& [key, method] : {std::pair(mediakey::play, ".PlayPause"), std::pair(mediakey::next, ".Next"),
                                    std::pair(mediakey::previous, ".Previous")}) {
    shown_ = "a";
    EXPECT_EQ(person(key), std::string("a") + method);
    shown_ = "";
    EXPECT_EQ(person(key), std::string("b") + method);
    shown_ = "gone";
    EXPECT_EQ(person(key), std::string("b") + method);
  }
}

TEST_F(KeyDecision, WithoutAPlayerAPersonsPressIsNothing) {
  for (const auto key : {mediakey::play, mediakey::next, mediakey::previous}) EXPECT_EQ(person(key), "") << key;
}

TEST_F(KeyDecision, UnknownKeysAreNothing) {
  add("a", PlaybackStatus::playing);
  for (const auto purpose : {Purpose::person, Purpose::pause, Purpose::resume}) {
    for (const std::int32_t key : {0, -1, 15, 19, 2147483647}) EXPECT_EQ(press(key, purpose), "") << key;
  }
}

}  // namespace
}  // namespace quillmere::mpris
