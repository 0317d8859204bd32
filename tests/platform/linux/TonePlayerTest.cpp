// The sound player where there is no daemon: names, and nothing left behind.
#include "platform/linux/TonePlayer.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "runtime/LoopExecutor.h"
#include "runtime/ThreadPoolExecutor.h"
#include "support/RecordingLogSink.h"
#include "tests/platform/contract/SoundPlayerContract.h"

namespace quillmere {
namespace {

TEST(TonePlayer, ASoundThatNobodyCanPlayGoesAwayQuietly) {
  support::RecordingLogSink log;
  SystemClocks clocks;
  LoopExecutor main;
  ThreadPoolExecutor background(2);
  TonePlayer player(Runtime{main, background, clocks, log, makeThreadSerialQueue}, "quillmere-no-such-daemon");
  EXPECT_TRUE(player.play("Glass"));
  EXPECT_TRUE(player.play("Hero"));
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (player.soundingCount() > 0 && std::chrono::steady_clock::now() < deadline) ::usleep(1000);
  EXPECT_EQ(player.soundingCount(), 0U);
  EXPECT_EQ(log.count("no audio daemon"), 2);
}

TEST(TonePlayer, MayBeDestroyedWhileSoundsBegin) {
  support::RecordingLogSink log;
  SystemClocks clocks;
  LoopExecutor main;
  ThreadPoolExecutor background(2);
  for (int round = 0; round < 20; ++round) {
    TonePlayer player(Runtime{main, background, clocks, log, makeThreadSerialQueue}, "quillmere-no-such-daemon");
    EXPECT_TRUE(player.play("Glass"));
  }
}

class TonePlayerHost {
 public:
  SoundPlayer& player() { return player_; }

 private:
  support::RecordingLogSink log_;
  SystemClocks clocks_;
  LoopExecutor main_;
  ThreadPoolExecutor background_{2};
  TonePlayer player_{Runtime{main_, background_, clocks_, log_, makeThreadSerialQueue}, "quillmere-no-such-daemon"};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SoundPlayerContract, TonePlayerHost);

}  // namespace
}  // namespace quillmere
