// The output-device stream and the now-playing stream, and the levels that change nothing.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr PropertyAddress mainVolume{audio::volumeScalar, audio::scopeOutput, 0};

class OutputDeviceStream : public StateFixture {};

TEST_F(OutputDeviceStream, TheFirstListWithADefaultCountsAsAChangeAndAttachesTheListenersOnceMore) {
  box->create();
  const auto before = box->audio.listenerCount(speakers, mainVolume);
  EXPECT_EQ(before, 1U);
  settle();
  EXPECT_EQ(box->audio.listenerCount(speakers, mainVolume), before + 1) << "the first listener is not really removed";
  box->advanceSeconds(9);
  EXPECT_EQ(box->audio.listenerCount(speakers, mainVolume), before + 1);
}

TEST_F(OutputDeviceStream, ADefaultChangedByOthersMovesMasterAndListenersAtTheNextList) {
  const auto headset = box->addHeadset(0.4F);
  box->start();
  forget();
  box->audio.setDefaultOutput(headset);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  box->advanceSeconds(3);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  EXPECT_EQ(*state().outputDeviceUID(), std::nullopt) << "the user's choice does not mirror the system default";
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
  box->audio.setVolume(headset, 0, 0.8F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.8F);
}

TEST_F(OutputDeviceStream, AListWithoutADefaultAfterOneWithCountsAsAChange) {
  box->start();
  box->audio.setDefaultOutput(0);
  box->advanceSeconds(3);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F) << "nothing to read: the value stays";
  const auto before = box->audio.listenerCount(speakers, mainVolume);
  box->audio.setDefaultOutput(speakers);
  box->advanceSeconds(3);
  EXPECT_EQ(box->audio.listenerCount(speakers, mainVolume), before + 1) << "and so does its return";
}

TEST_F(OutputDeviceStream, TheListIsShownAsTheMonitorGivesIt) {
  box->addHeadset();
  box->start();
  ASSERT_EQ(state().outputDevices()->size(), 2U);
  EXPECT_EQ(state().outputDevices()->at(0).uid, "speakers");
  EXPECT_TRUE(state().outputDevices()->at(0).isDefault);
  EXPECT_EQ(state().outputDevices()->at(1).uid, "headset");
}

TEST_F(OutputDeviceStream, AnUnreadableListShowsNoDevicesAndTheNextShowsThemAgain) {
  box->start();
  box->audio.fail({MemoryAudioHardware::Method::propertyDataSize, systemObjectID, audio::devices}, unspecifiedError);
  box->advanceSeconds(3);
  EXPECT_THAT(*state().outputDevices(), IsEmpty());
  box->advanceSeconds(3);
  EXPECT_EQ(state().outputDevices()->size(), 1U);
}

class NowPlayingStream : public StateFixture {};

TEST_F(NowPlayingStream, ATrackShowsWithinASecondAndGoesAgain) {
  startWithThree();
  EXPECT_EQ(*state().nowPlaying(), std::nullopt);
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->advanceSeconds(1);
  ASSERT_TRUE(state().nowPlaying()->has_value());
  EXPECT_EQ((*state().nowPlaying())->title, "Song");
  EXPECT_EQ((*state().nowPlaying())->sourceBundleID, spotify);
  EXPECT_TRUE((*state().nowPlaying())->isPlaying);
  box->player.setInfo(std::nullopt);
  box->advanceSeconds(1);
  EXPECT_EQ(*state().nowPlaying(), std::nullopt);
}

TEST_F(NowPlayingStream, ASourceThatHangsLeavesTheLastTrackAndEverythingElseRunning) {
  startWithThree();
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->advanceSeconds(1);
  box->player.setMode(MemoryNowPlayingSource::Mode::holds);
  box->player.setInfo(std::nullopt);
  box->advanceSeconds(30);
  EXPECT_TRUE(state().nowPlaying()->has_value());
  box->setSounding(spotify, true);
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
}

TEST_F(NowPlayingStream, ASourceThatDropsItsQuestionsEndsTheStreamAndNothingElse) {
  startWithThree();
  box->player.setTrack("Song", true, box->pidOf(spotify));
  box->player.setMode(MemoryNowPlayingSource::Mode::drops);
  box->advanceSeconds(10);
  box->player.setMode(MemoryNowPlayingSource::Mode::answers);
  box->advanceSeconds(10);
  EXPECT_EQ(*state().nowPlaying(), std::nullopt) << "nobody asks any more";
  box->setSounding(spotify, true);
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
}

class LevelStream : public StateFixture {};

TEST_F(LevelStream, LevelsAreTakenAsTheyComeAndMakeNobodyLive) {
  startWithThree();
  auto everLive = *state().liveBundleIDs();
  const auto watch =
      state().liveBundleIDs().observe([&](const auto& live) { everLive.insert(live.begin(), live.end()); });
  box->advanceSeconds(5);
  EXPECT_GE(box->engine->levelsTold(), 50U);
  EXPECT_EQ(box->engine->mostLevelsWaiting(), 0U) << "levels that nobody takes would pile up for ever";
  EXPECT_THAT(everLive, IsEmpty()) << "a level of an application makes nobody live";
}

}  // namespace
}  // namespace quillmere
