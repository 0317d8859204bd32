// The now-playing source in memory: the port's contract, and the manners a test can choose.
#include "platform/memory/MemoryNowPlayingSource.h"

#include "runtime/VirtualTime.h"
#include "tests/platform/contract/NowPlayingContract.h"

namespace quillmere {
namespace {

class MemoryNowPlayingHost {
 public:
  NowPlayingSource& source() { return source_; }
  std::optional<NowPlayingInfo> info() {
    std::optional<NowPlayingInfo> answer;
    source_.nowPlayingInfo([&](std::optional<NowPlayingInfo> info) {
      wasOnMain_ = wasOnMain_ && time_.main().isCurrent();
      answer = std::move(info);
    });
    time_.runUntilIdle();
    return answer;
  }
  std::optional<std::int32_t> pid() {
    std::optional<std::int32_t> answer;
    source_.nowPlayingApplicationPID([&](std::optional<std::int32_t> pid) {
      wasOnMain_ = wasOnMain_ && time_.main().isCurrent();
      answer = pid;
    });
    time_.runUntilIdle();
    return answer;
  }
  void play(const std::string& title, bool isPlaying) { source_.setTrack(title, isPlaying, playerPID()); }
  void end() {
    source_.setInfo(std::nullopt);
    source_.setApplicationPID(std::nullopt);
  }
  [[nodiscard]] std::int32_t playerPID() const { return 77; }
  [[nodiscard]] bool repliesCameOnMain() const { return wasOnMain_; }

 private:
  VirtualTime time_;
  MemoryNowPlayingSource source_{time_.main()};
  bool wasOnMain_ = true;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Memory, NowPlayingContract, MemoryNowPlayingHost);

TEST(MemoryNowPlayingSource, HeldQuestionsAreAnsweredWithWhatIsSetAtTheRelease) {
  VirtualTime time;
  MemoryNowPlayingSource source(time.main());
  source.setTrack("Before", true, 1);
  source.setMode(MemoryNowPlayingSource::Mode::holds);
  std::optional<NowPlayingInfo> answer;
  source.nowPlayingInfo([&](std::optional<NowPlayingInfo> info) { answer = std::move(info); });
  time.runUntilIdle();
  EXPECT_EQ(answer, std::nullopt);
  source.setTrack("After", true, 1);
  source.releaseHeld();
  time.runUntilIdle();
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->at(nowplaying::title), NowPlayingValue(std::string("After")));
}

TEST(MemoryNowPlayingSource, DroppedQuestionsAreNeverAnswered) {
  VirtualTime time;
  MemoryNowPlayingSource source(time.main());
  source.setMode(MemoryNowPlayingSource::Mode::drops);
  bool hasAnswered = false;
  source.nowPlayingInfo([&](const auto&) { hasAnswered = true; });
  source.nowPlayingApplicationPID([&](const auto&) { hasAnswered = true; });
  source.setMode(MemoryNowPlayingSource::Mode::answers);
  source.releaseHeld();
  time.runUntilIdle();
  EXPECT_FALSE(hasAnswered);
  EXPECT_EQ(source.infoRequestCount(), 1);
  EXPECT_EQ(source.pidRequestCount(), 1);
}

}  // namespace
}  // namespace quillmere
