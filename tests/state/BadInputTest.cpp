// Gains that are no gains, settings that were damaged, names out of all proportion: defined results, nothing lost.
#include <algorithm>
#include <cmath>
#include <limits>

#include "StateFixture.h"
#include "core/Percent.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;

class BadInput : public StateFixture {
 protected:
  [[nodiscard]] bool logged(const std::string& text) const {
    return std::ranges::any_of(box->log.messages(),
                               [&](const auto& line) { return line.find(text) != std::string::npos; });
  }
};

TEST_F(BadInput, AGainThatIsNotANumberStandsInMemoryAndLeavesTheStoreAsItWas) {
  startWithThree();
  state().setGain(0.5F, spotify);
  const auto stored = disk.text("quillmere.appsState");
  state().setGain(std::nanf(""), spotify);
  settle();
  EXPECT_TRUE(std::isnan(box->gainOf(spotify)));
  EXPECT_EQ(disk.text("quillmere.appsState"), stored);
  EXPECT_TRUE(logged("quillmere.appsState not stored"));
  EXPECT_TRUE(std::isnan(engineCalls().back().gain)) << "the engine limits what it is sent";
  EXPECT_EQ(percentOf(box->gainOf(spotify)), 0);
}

TEST_F(BadInput, EverythingGoesOnAroundAGainThatIsNotANumber) {
  startWithThree();
  state().setGain(std::nanf(""), spotify);
  state().toggleWhisperMode();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.1F);
  state().toggleWhisperMode();
  EXPECT_TRUE(std::isnan(box->gainOf(spotify)));
  microphone(zoom, true);
  microphone(zoom, false);
  state().startPomodoroFocus();
  state().cancelPomodoro(false);
  state().addProfile("Broken");
  state().applyProfile(state().profiles()->back().id);
  box->advanceSeconds(5);
  EXPECT_EQ(state().apps()->size(), 3U);
  state().setGain(0.4F, spotify);
  EXPECT_FLOAT_EQ(storedApps().at(1).gain, 0.4F) << "the next real gain is stored again";
}

TEST_F(BadInput, AnInfiniteGainStandsInMemoryAndIsNotStored) {
  startWithThree();
  for (const float gain : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()}) {
    state().setGain(gain, spotify);
    settle();
    EXPECT_EQ(box->gainOf(spotify), gain);
    EXPECT_EQ(engineCalls().back(), gainCall(spotify, gain));
  }
  EXPECT_FALSE(disk.has("quillmere.appsState"));
}

TEST_F(BadInput, AGainOutOfRangeIsKeptStoredAndSentAsItIs) {
  startWithThree();
  for (const float gain : {-1.0F, 7.0F}) {
    state().setGain(gain, spotify);
    settle();
    EXPECT_EQ(box->gainOf(spotify), gain);
    EXPECT_EQ(storedApps().at(1).gain, gain);
    EXPECT_EQ(engineCalls().back(), gainCall(spotify, gain));
  }
}

TEST_F(BadInput, AMasterOutOfRangeIsLimitedByTheHardwareLayerOnly) {
  startWithThree();
  state().setMasterGain(1.7F);
  EXPECT_EQ(*state().masterGain(), 1.7F);
  EXPECT_EQ(box->audio.volume(speakers, 0), 1.0F);
  settle();
  EXPECT_EQ(*state().masterGain(), 1.0F) << "the hardware's answer corrects it";
  state().setMasterGain(-1.0F);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.0F);
}

TEST_F(BadInput, AStoredListWithOneBadElementIsIgnoredWithALogLineAndKeptUntilTheNextWrite) {
  const std::string damaged = R"([{"bundleID":"com.spotify.client","name":"Spotify","gain":"loud","muted":false}])";
  disk.set("quillmere.appsState", RecordingDefaults::bytes(damaged));
  startWithThree();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_EQ(disk.text("quillmere.appsState"), damaged);
  EXPECT_TRUE(logged("stored quillmere.appsState ignored"));
}

TEST_F(BadInput, DamagedProfilesStartWithAFreshDefaultAndSurviveUntilTheFirstChange) {
  disk.set("quillmere.profiles", RecordingDefaults::bytes("[{"));
  startWithThree();
  EXPECT_EQ(state().profiles()->front().name, "Default");
  EXPECT_EQ(disk.text("quillmere.profiles"), "[{");
  state().addProfile("Evening");
  EXPECT_EQ(storedProfiles().size(), 2U);
}

TEST_F(BadInput, AnActiveProfileThatDoesNotExistIsKeptAsItStands) {
  const auto id = Uuid::random();
  disk.set("quillmere.activeProfileID", id.text());
  startWithThree();
  EXPECT_EQ(*state().activeProfileID(), id);
  state().applyProfile(id);
  EXPECT_TRUE(engineCalls().empty());
}

TEST_F(BadInput, AStoredMasterOfAnotherTypeCountsAsAbsent) {
  box->audio.updateDevice(speakers, {"speakers", "Speakers"});
  disk.set("quillmere.masterGain", std::string("loud"));
  box->start();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.7F);
}

TEST_F(BadInput, ADeviceWithQuotesAndOneOfFourThousandCharactersAreRoutedByTheirWholeName) {
  const std::string quoted = R"(Bob's "best" \ device)";
  const std::string endless(4096, 'x');
  box->audio.addDevice({quoted, quoted});
  box->audio.addDevice({endless, endless});
  startWithThree();
  state().setRouting(quoted, spotify);
  state().setRouting(endless, zoom);
  state().setOutputDeviceUID(quoted);
  settle();
  EXPECT_EQ(storedApps(), *state().apps());
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall(), routingCall(spotify, quoted), routingCall(zoom, endless)));
  restart({{spotify, "Spotify"}, {zoom, "Zoom"}});
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, quoted);
  EXPECT_EQ(box->app(zoom)->routedDeviceUID, endless);
  EXPECT_EQ(*state().outputDeviceUID(), quoted);
}

TEST_F(BadInput, AnEmptyMachineWithoutDevicesOrApplicationsRunsAllOperations) {
  box->audio.removeDevice(speakers);
  box->start();
  state().setMasterGain(0.3F);
  state().toggleWhisperMode();
  state().startSleepTimer(1);
  state().startPomodoroFocus();
  state().setOutputDeviceUID("nothing");
  state().addProfile("");
  box->advanceSeconds(120);
  EXPECT_EQ(*state().masterGain(), 0.0F);
  EXPECT_TRUE(state().apps()->empty());
}

TEST_F(BadInput, AbsurdProcessIdsLeaveTheTrackWithoutAnApplication) {
  startWithThree();
  for (const std::int32_t pid :
       {-1, 0, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    box->player.setTrack("Song", true, pid);
    box->advanceSeconds(1);
    ASSERT_TRUE(state().nowPlaying()->has_value());
    EXPECT_EQ((*state().nowPlaying())->sourceBundleID, std::nullopt) << pid;
  }
}

}  // namespace
}  // namespace quillmere
