// What every now-playing source must do, written once and run on each of them.
// A host offers `info()` and `pid()`, which wait for the reply, `play(title, isPlaying)` and `end()`, which return once
// the source can know, `playerPID()`, `source()`, and `repliesCameOnMain()`.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "platform/NowPlayingSource.h"

namespace quillmere {

template <typename Host>
class NowPlayingContract : public ::testing::Test {
 protected:
  double rate() {
    const auto info = host_.info();
    if (!info || !info->contains(nowplaying::playbackRate)) return -1.0;
    const auto* rate = std::get_if<double>(&info->at(nowplaying::playbackRate));
    return rate == nullptr ? -2.0 : *rate;
  }

  Host host_;
};

TYPED_TEST_SUITE_P(NowPlayingContract);

TYPED_TEST_P(NowPlayingContract, WithoutAPlayerAnswersAreAbsent) {
  EXPECT_EQ(this->host_.info(), std::nullopt);
  EXPECT_LT(this->host_.pid().value_or(0), 1);
}

TYPED_TEST_P(NowPlayingContract, APlayingTrackHasItsTitleAndARate) {
  this->host_.play("Song", true);
  const auto info = this->host_.info();
  ASSERT_TRUE(info);
  EXPECT_EQ(info->at(nowplaying::title), NowPlayingValue(std::string("Song")));
  EXPECT_GT(this->rate(), 0.01);
  EXPECT_EQ(this->host_.pid(), this->host_.playerPID());
}

TYPED_TEST_P(NowPlayingContract, APausedTrackHasARateOfZero) {
  this->host_.play("Song", false);
  EXPECT_EQ(this->rate(), 0.0);
}

TYPED_TEST_P(NowPlayingContract, AnotherTrackTakesThePlace) {
  this->host_.play("One", true);
  this->host_.play("Two", true);
  EXPECT_EQ(this->host_.info()->at(nowplaying::title), NowPlayingValue(std::string("Two")));
}

TYPED_TEST_P(NowPlayingContract, AfterThePlayersEndAnswersAreAbsentAgain) {
  this->host_.play("Song", true);
  this->host_.end();
  EXPECT_EQ(this->host_.info(), std::nullopt);
  EXPECT_LT(this->host_.pid().value_or(0), 1);
}

TYPED_TEST_P(NowPlayingContract, AChangeIsRaised) {
  const auto& changes = this->host_.source().changes();
  if (&changes == &ChangeSignal::absent()) GTEST_SKIP() << "this source can't tell and has to be asked";
  auto before = changes.raises();
  this->host_.play("Song", false);
  EXPECT_GT(changes.raises(), before);
  before = changes.raises();
  this->host_.play("Song", true);
  EXPECT_GT(changes.raises(), before);
  before = changes.raises();
  this->host_.end();
  EXPECT_GT(changes.raises(), before);
}

TYPED_TEST_P(NowPlayingContract, RepliesComeOnMain) {
  this->host_.play("Song", true);
  this->host_.info();
  this->host_.pid();
  EXPECT_TRUE(this->host_.repliesCameOnMain());
}

REGISTER_TYPED_TEST_SUITE_P(NowPlayingContract, WithoutAPlayerAnswersAreAbsent, APlayingTrackHasItsTitleAndARate,
                            APausedTrackHasARateOfZero, AnotherTrackTakesThePlace,
                            AfterThePlayersEndAnswersAreAbsentAgain, AChangeIsRaised, RepliesComeOnMain);

}  // namespace quillmere
