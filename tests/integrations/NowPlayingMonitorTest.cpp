// From the source's answers to a track, once a period.
#include "integrations/NowPlayingMonitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "platform/memory/MemoryNowPlayingSource.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::SizeIs;
using Track = std::optional<NowPlayingTrack>;

NowPlayingTrack titleAlone() {
  NowPlayingTrack track;
  track.title = "Title";
  return track;
}

class NowPlaying : public ::testing::Test {
 protected:
  NowPlaying() : source(time.main()), monitor(source, workspace, time.runtime(log), 1s) {}
  ~NowPlaying() override { time.shutDown(); }

  /// Consumes the stream from now on.
  void listen() {
    consumer = startTask(time.main(), [this](TaskContext&) -> Async<void> {
      auto tracks = monitor.stream();
      while (true) {
        auto track = co_await tracks.next();
        if (!track) co_return;
        seen.push_back(std::move(*track));
      }
    });
    time.runUntilIdle();
  }
  /// The track made of one dictionary.
  Track trackOf(NowPlayingInfo info) {
    source.setInfo(std::move(info));
    listen();
    return seen.empty() ? std::nullopt : seen.back();
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryNowPlayingSource source;
  MemoryWorkspace workspace;
  NowPlayingMonitor monitor;
  std::vector<Track> seen;
  Task consumer;
};

TEST_F(NowPlaying, EveryKeyGoesToItsField) {
  workspace.launch("com.spotify.client", "Spotify", 42);
  source.setApplicationPID(42);
  const auto track = trackOf({{nowplaying::title, std::string("Title")},
                              {nowplaying::artist, std::string("Artist")},
                              {nowplaying::album, std::string("Album")},
                              {nowplaying::elapsedTime, 12.5},
                              {nowplaying::duration, 180.0},
                              {nowplaying::playbackRate, 1.0}});
  EXPECT_EQ(track, (NowPlayingTrack{"Title", "Artist", "Album", "com.spotify.client", true, 12.5, 180.0}));
}

TEST_F(NowPlaying, ATitleAloneIsATrackThatDoesNotPlay) {
  EXPECT_EQ(trackOf({{nowplaying::title, std::string("Title")}}), titleAlone());
}

TEST_F(NowPlaying, WithoutATitleThereIsNoTrackWhateverElseIsThere) {
  EXPECT_EQ(trackOf({{nowplaying::artist, std::string("Artist")}, {nowplaying::playbackRate, 1.0}}), std::nullopt);
}

TEST_F(NowPlaying, AnEmptyTitleIsNoTrackWhateverElseIsThere) {
  EXPECT_EQ(trackOf({{nowplaying::title, std::string()}, {nowplaying::artist, std::string("Artist")}}), std::nullopt);
}

TEST_F(NowPlaying, ATitleOfAnotherTypeIsNoTrack) { EXPECT_EQ(trackOf({{nowplaying::title, 7.0}}), std::nullopt); }

TEST_F(NowPlaying, AnEmptyDictionaryIsNoTrack) { EXPECT_EQ(trackOf({}), std::nullopt); }

TEST_F(NowPlaying, ARateMustBeAboveAHundredthToCountAsPlaying) {
  const auto plays = [this](NowPlayingValue rate) {
    return trackOf({{nowplaying::title, std::string("Title")}, {nowplaying::playbackRate, std::move(rate)}})->isPlaying;
  };
  EXPECT_FALSE(plays(0.005));
  EXPECT_FALSE(plays(0.01));
  EXPECT_TRUE(plays(0.0101));
  EXPECT_TRUE(plays(1.0));
  EXPECT_FALSE(plays(-1.0));
  EXPECT_FALSE(plays(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(plays(std::string("1.0")));
  EXPECT_FALSE(plays(true));
  EXPECT_FALSE(plays(std::int64_t{1})) << "a rate is a double";
}

TEST_F(NowPlaying, ValuesOfOtherTypesAreAbsentAndTheTrackStands) {
  EXPECT_EQ(trackOf({{nowplaying::title, std::string("Title")},
                     {nowplaying::artist, 1.0},
                     {nowplaying::album, true},
                     {nowplaying::elapsedTime, std::string("12")},
                     {nowplaying::duration, std::int64_t{180}}}),
            titleAlone());
}

TEST_F(NowPlaying, AnEmptyArtistStaysAnEmptyText) {
  EXPECT_EQ(trackOf({{nowplaying::title, std::string("Title")}, {nowplaying::artist, std::string()}})->artist, "");
}

TEST_F(NowPlaying, NoProcessLeavesTheTrackWithoutAnApplication) {
  workspace.launch("com.spotify.client", "Spotify", 0);
  for (const std::optional<std::int32_t> pid :
       {std::optional<std::int32_t>(0), std::optional<std::int32_t>(-1), std::optional<std::int32_t>()}) {
    source.setApplicationPID(pid);
    const auto track = trackOf({{nowplaying::title, std::string("Title")}, {nowplaying::playbackRate, 1.0}});
    ASSERT_TRUE(track.has_value());
    EXPECT_EQ(track->sourceBundleID, std::nullopt);
    EXPECT_TRUE(track->isPlaying);
  }
}

TEST_F(NowPlaying, AProcessThatIsNoRunningApplicationLeavesTheTrackWithoutOne) {
  workspace.launch("com.spotify.client", "Spotify", 42);
  source.setApplicationPID(43);
  EXPECT_EQ(trackOf({{nowplaying::title, std::string("Title")}})->sourceBundleID, std::nullopt);
}

TEST_F(NowPlaying, TheFirstApplicationWithTheProcessIdCountsEvenWithoutAnIdentifier) {
  workspace.setRunningApplications({{std::nullopt, "Nameless", 42}, {"com.spotify.client", "Spotify", 42}});
  source.setApplicationPID(42);
  EXPECT_EQ(trackOf({{nowplaying::title, std::string("Title")}})->sourceBundleID, std::nullopt);
}

TEST_F(NowPlaying, AMissingSourceGivesNoTrackEverySecond) {
  listen();
  time.advance(3s);
  EXPECT_THAT(seen, ElementsAre(std::nullopt, std::nullopt, std::nullopt, std::nullopt));
}

TEST_F(NowPlaying, AnElementComesEachPeriodChangedOrNot) {
  source.setTrack("Song", true, 1);
  listen();
  EXPECT_THAT(seen, SizeIs(1));
  time.advance(999ms);
  EXPECT_THAT(seen, SizeIs(1));
  time.advance(1ms);
  EXPECT_THAT(seen, SizeIs(2));
  EXPECT_EQ(seen[0], seen[1]);
}

TEST_F(NowPlaying, BothQuestionsAreAskedBeforeEitherIsAnswered) {
  source.setMode(MemoryNowPlayingSource::Mode::holds);
  listen();
  EXPECT_EQ(source.infoRequestCount(), 1);
  EXPECT_EQ(source.pidRequestCount(), 1);
}

TEST_F(NowPlaying, ASourceThatNeverAnswersStopsTheElementsUntilItDoes) {
  source.setMode(MemoryNowPlayingSource::Mode::holds);
  listen();
  time.advance(60s);
  EXPECT_THAT(seen, SizeIs(0));
  EXPECT_EQ(source.infoRequestCount(), 1) << "no question is piled upon an open one";
  source.setTrack("Song", true, 1);
  source.setMode(MemoryNowPlayingSource::Mode::answers);
  source.releaseHeld();
  time.runUntilIdle();
  ASSERT_THAT(seen, SizeIs(1));
  EXPECT_EQ(seen.front()->title, "Song");
  time.advance(1s);
  EXPECT_THAT(seen, SizeIs(2));
}

TEST_F(NowPlaying, ASourceThatDropsItsQuestionsEndsTheStreamWithoutAnElement) {
  source.setTrack("Song", true, 1);
  source.setMode(MemoryNowPlayingSource::Mode::drops);
  listen();
  EXPECT_TRUE(consumer.isFinished()) << "who waits for the next element is told that there is none";
  source.setMode(MemoryNowPlayingSource::Mode::answers);
  time.advance(60s);
  EXPECT_THAT(seen, SizeIs(0));
  EXPECT_EQ(source.infoRequestCount(), 1) << "the poll is gone with its question";
}

TEST_F(NowPlaying, ASourceThatHoldsItsQuestionsKeepsTheStream) {
  source.setMode(MemoryNowPlayingSource::Mode::holds);
  listen();
  time.advance(60s);
  EXPECT_FALSE(consumer.isFinished());
}

TEST_F(NowPlaying, AnAbandonedStreamAsksNoMore) {
  listen();
  consumer.cancel();
  time.advance(1s);
  const auto asked = source.infoRequestCount();
  time.advance(10s);
  EXPECT_EQ(source.infoRequestCount(), asked);
}

TEST_F(NowPlaying, TheTitleMayBeEndless) {
  const std::string endless(1 << 20, 'x');
  EXPECT_EQ(trackOf({{nowplaying::title, endless}})->title, endless);
}

}  // namespace
}  // namespace quillmere
