// A tick a second, and none when it is off.
#include "views/shared/SecondTicker.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

class Ticks : public testing::Test {
 protected:
  void pass(double seconds) {
    time.advance(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds)));
  }

  VirtualTime time;
  RecordingLogSink log;
  int ticks = 0;
  std::unique_ptr<SecondTicker> ticker = std::make_unique<SecondTicker>(time.runtime(log), [this] { ++ticks; });
};

TEST_F(Ticks, ComeOnceASecondWhileItIsOn) {
  pass(3);
  EXPECT_EQ(ticks, 0);
  ticker->setOn(true);
  pass(0.9);
  EXPECT_EQ(ticks, 0);
  pass(2.2);
  EXPECT_EQ(ticks, 3);
  ticker->setOn(false);
  pass(5);
  EXPECT_EQ(ticks, 3);
}

TEST_F(Ticks, KeepTheirBeatWhenItIsTurnedOnAgain) {
  ticker->setOn(true);
  pass(0.6);
  ticker->setOn(true);
  pass(0.5);
  EXPECT_EQ(ticks, 1);
}

TEST_F(Ticks, EndWithTheTicker) {
  ticker->setOn(true);
  ticker.reset();
  pass(3);
  EXPECT_EQ(ticks, 0);
}

TEST_F(Ticks, MayTurnTheTickerOff) {
  ticker = std::make_unique<SecondTicker>(time.runtime(log), [this] {
    ++ticks;
    ticker->setOn(false);
  });
  ticker->setOn(true);
  pass(4);
  EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace quillmere
