// The meaning of a media key: every combination of what was told and what is.
#include "platform/linux/mpris/KeyDecision.h"

#include <gtest/gtest.h>

#include "platform/MediaKeys.h"

namespace quillmere::mpris {
namespace {

class KeyDecision : public ::testing::Test {
 protected:
  Player& add(const std::string& name, PlaybackStatus status) {
    auto& player = players_[name];
    player.busName = name;
    player.status = status;
    player.discovered = players_.size();
    if (status == PlaybackStatus::playing) player.lastPlayed = players_.size();
    return player;
  }
  std::string press(std::int32_t key, const std::optional<ToldState>& told) {
    const auto call = decideKey(key, told, players_, pausedByKey_);
    return call ? call->busName + "." + call->method : "";
  }
  std::string play(const std::optional<ToldState>& told) { return press(mediakey::play, told); }
  static std::optional<ToldState> playing(const std::string& name) { return ToldState{name, true}; }
  static std::optional<ToldState> paused(const std::string& name) { return ToldState{name, false}; }

  Players players_;
  std::string pausedByKey_;
};

TEST_F(KeyDecision, AToldPlayingTrackIsPaused) {
  add("a", PlaybackStatus::playing);
  EXPECT_EQ(play(playing("a")), "a.Pause");
}

TEST_F(KeyDecision, AToldPausedTrackIsPlayed) {
  add("a", PlaybackStatus::paused);
  EXPECT_EQ(play(paused("a")), "a.Play");
}

TEST_F(KeyDecision, APauseThatSomebodyElseMadeIsNotUndone) {
  add("a", PlaybackStatus::paused);
  EXPECT_EQ(play(playing("a")), "a.Pause") << "the program wanted silence, and pausing again does nothing";
}

TEST_F(KeyDecision, WhatHasBegunByItselfIsNotPaused) {
  add("a", PlaybackStatus::playing);
  EXPECT_EQ(play(paused("a")), "");
}

TEST_F(KeyDecision, WhatHasBegunElsewhereKeepsTheOldTrackQuiet) {
  add("a", PlaybackStatus::paused);
  add("b", PlaybackStatus::playing);
  EXPECT_EQ(play(paused("a")), "");
}

TEST_F(KeyDecision, IfAnotherPlaysNowItIsPaused) {
  add("a", PlaybackStatus::paused);
  add("b", PlaybackStatus::playing);
  EXPECT_EQ(play(playing("a")), "b.Pause");
}

TEST_F(KeyDecision, APlayerThatHasGoneIsNothing) {
  EXPECT_EQ(play(playing("a")), "");
  EXPECT_EQ(play(paused("a")), "");
  add("b", PlaybackStatus::paused);
  EXPECT_EQ(play(playing("a")), "");
  EXPECT_EQ(play(paused("a")), "");
}

TEST_F(KeyDecision, WithoutATrackOnlyOurOwnPauseIsUndone) {
  auto& player = add("a", PlaybackStatus::paused);
  EXPECT_EQ(play(std::nullopt), "") << "somebody else has paused it";
  player.status = PlaybackStatus::playing;
  EXPECT_EQ(play(std::nullopt), "a.Pause");
  player.status = PlaybackStatus::paused;
  EXPECT_EQ(play(std::nullopt), "a.Play");
  EXPECT_EQ(play(std::nullopt), "") << "once";
}

TEST_F(KeyDecision, NextAndPreviousGoToTheToldPlayer) {
  add("a", PlaybackStatus::paused);
  add("b", PlaybackStatus::playing);
  EXPECT_EQ(press(mediakey::next, paused("a")), "a.Next");
  EXPECT_EQ(press(mediakey::previous, paused("a")), "a.Previous");
  EXPECT_EQ(press(mediakey::next, std::nullopt), "b.Next");
  EXPECT_EQ(press(mediakey::next, playing("gone")), "b.Next");
}

TEST_F(KeyDecision, UnknownKeysAreNothing) {
  add("a", PlaybackStatus::playing);
  for (const std::int32_t key : {0, -1, 15, 19, 2147483647}) EXPECT_EQ(press(key, playing("a")), "") << key;
}

}  // namespace
}  // namespace quillmere::mpris
