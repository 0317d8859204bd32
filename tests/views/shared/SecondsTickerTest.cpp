// What counts seconds.
#include "views/shared/SecondsTicker.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

class Ticker : public ::testing::Test {
 protected:
  void TearDown() override {
    ticker.reset();
    time.shutDown();
  }
  void pass(int milliseconds) { time.advance(std::chrono::milliseconds(milliseconds)); }

  VirtualTime time;
  RecordingLogSink log;
  int ticks = 0;
  std::unique_ptr<SecondsTicker> ticker = std::make_unique<SecondsTicker>(time.runtime(log), [this] { ++ticks; });
};

TEST_F(Ticker, TicksOnceASecondWhileItRuns) {
  pass(3000);
  EXPECT_EQ(ticks, 0);
  ticker->setRunning(true);
  pass(999);
  EXPECT_EQ(ticks, 0);
  pass(2001);
  EXPECT_EQ(ticks, 3);
  ticker->setRunning(false);
  pass(5000);
  EXPECT_EQ(ticks, 3);
}

TEST_F(Ticker, StartedTwiceItTicksOnce) {
  ticker->setRunning(true);
  ticker->setRunning(true);
  pass(1000);
  EXPECT_EQ(ticks, 1);
}

TEST_F(Ticker, MayBeStoppedByItsOwnTick) {
  SecondsTicker once(time.runtime(log), [&] {
    ++ticks;
    once.setRunning(false);
  });
  once.setRunning(true);
  pass(5000);
  EXPECT_EQ(ticks, 1);
}

TEST_F(Ticker, TicksNoMoreOnceItHasGone) {
  ticker->setRunning(true);
  ticker.reset();
  pass(2000);
  EXPECT_EQ(ticks, 0);
}

}  // namespace
}  // namespace quillmere
