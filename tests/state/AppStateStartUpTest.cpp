// Start-up: what the fields hold, what is written, what is not touched.
#include <utility>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class StartUp : public StateFixture {};

TEST_F(StartUp, AFirstRunHasOneEmptyProfileNamedDefaultAndNothingElseSet) {
  box->start();
  ASSERT_EQ(state().profiles()->size(), 1U);
  EXPECT_EQ(state().profiles()->front().name, "Default");
  EXPECT_THAT(state().profiles()->front().apps, IsEmpty());
  EXPECT_EQ(*state().activeProfileID(), std::nullopt);
  EXPECT_EQ(*state().outputDeviceUID(), std::nullopt);
  EXPECT_FALSE(*state().hasCompletedOnboarding());
  EXPECT_TRUE(*state().pauseOnHeadphoneDisconnect());
  EXPECT_THAT(*state().focusCandidateBundleIDs(), IsEmpty());
  EXPECT_EQ(state().duckRule()->triggerBundleIDs, DuckRule::defaultMeetingApps());
  EXPECT_EQ(state().duckRule()->duckedBundleIDs, DuckRule::defaultMusicApps());
  EXPECT_FLOAT_EQ(state().duckRule()->targetGain, 0.3F);
  EXPECT_EQ(state().duckRule()->fadeMillis, 300);
  EXPECT_EQ(state().duckRule()->restoreDelayMillis, 1500);
  EXPECT_THAT(*state().apps(), IsEmpty());
}

TEST_F(StartUp, FieldsThatAreNotStoredHaveTheirStartValues) {
  box->create();
  EXPECT_FALSE(*state().isDucking());
  EXPECT_FALSE(*state().isWhisperMode());
  EXPECT_FLOAT_EQ(*state().whisperLevel(), 0.1F);
  EXPECT_EQ(*state().pomodoroPhase(), PomodoroPhase::idle());
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 25);
  EXPECT_EQ(*state().pomodoroBreakMinutes(), 5);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), std::nullopt);
  EXPECT_EQ(*state().sleepTimerEndsAt(), std::nullopt);
  EXPECT_EQ(*state().nowPlaying(), std::nullopt);
  EXPECT_THAT(*state().outputDevices(), IsEmpty());
  EXPECT_THAT(*state().browserTabs(), IsEmpty());
}

TEST_F(StartUp, AFirstRunLeavesItsKeysBehindEvenIfTheUserDoesNothing) {
  box->start();
  std::vector<std::string> keys;
  for (const auto& [key, value] : disk.values()) keys.push_back(key);
  EXPECT_THAT(keys, UnorderedElementsAre("quillmere.pauseOnHeadphoneDisconnect", "quillmere.focusCandidates",
                                         "quillmere.duckRule", "quillmere.duckRule.browsersInDuckedV1"));
  EXPECT_EQ(disk.boolean("quillmere.pauseOnHeadphoneDisconnect"), true);
  EXPECT_EQ(disk.text("quillmere.focusCandidates"), "[]");
}

TEST_F(StartUp, UntilTheFirstChangeOfProfilesTheDefaultProfileGetsANewIdAtEveryStart) {
  box->start();
  const auto first = state().profiles()->front().id;
  restart({});
  EXPECT_NE(state().profiles()->front().id, first);
}

TEST_F(StartUp, BothKeysAreRewrittenWithWhatWasReadAtEveryStart) {
  disk.set("quillmere.pauseOnHeadphoneDisconnect", false);
  disk.set("quillmere.focusCandidates", RecordingDefaults::bytes(R"(["org.example.editor"])"));
  disk.set("quillmere.duckRule.browsersInDuckedV1", true);
  disk.clearWritten();
  box->start();
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.pauseOnHeadphoneDisconnect", "quillmere.focusCandidates"));
  EXPECT_EQ(disk.boolean("quillmere.pauseOnHeadphoneDisconnect"), false);
  EXPECT_EQ(disk.text("quillmere.focusCandidates"), R"(["org.example.editor"])");
  EXPECT_FALSE(*state().pauseOnHeadphoneDisconnect());
  EXPECT_THAT(*state().focusCandidateBundleIDs(), ElementsAre("org.example.editor"));
}

TEST_F(StartUp, TheStoredOutputDeviceDoesNotTouchTheSystemDefault) {
  box->addHeadset();
  disk.set("quillmere.outputDeviceUID", std::string("headset"));
  box->start();
  EXPECT_EQ(*state().outputDeviceUID(), "headset");
  EXPECT_EQ(box->audio.defaultOutput(), speakers);
  EXPECT_EQ(box->audio.callCount(MemoryAudioHardware::Method::writeUInt32), 0);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(StartUp, WithAReadableDeviceTheMasterShowsTheHardwareWhateverWasStored) {
  disk.set("quillmere.masterGain", 0.25);
  disk.clearWritten();
  box->start();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  EXPECT_EQ(disk.real("quillmere.masterGain"), 0.25) << "the value from the hardware is not stored";
}

TEST_F(StartUp, WithoutAReadableVolumeTheMasterShowsWhatWasStored) {
  box->audio.updateDevice(speakers, {"speakers", "Speakers"});
  disk.set("quillmere.masterGain", 0.25);
  box->start();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.25F);
}

TEST_F(StartUp, WithoutAReadableVolumeAndNothingStoredTheMasterIsSeventyPercent) {
  box->audio.updateDevice(speakers, {"speakers", "Speakers"});
  box->start();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.7F);
}

TEST_F(StartUp, ASmallerChangeOfTheSystemVolumeThanAThousandthIsIgnored) {
  box->start();
  box->audio.setVolume(speakers, 0, 0.6005F);
  settle();
  EXPECT_EQ(*state().masterGain(), 0.6F);
}

TEST_F(StartUp, AChangeOfTheSystemVolumeJustAboveAThousandthShows) {
  box->start();
  box->audio.setVolume(speakers, 0, 0.602F);
  settle();
  EXPECT_EQ(*state().masterGain(), 0.602F);
}

TEST_F(StartUp, ALargerChangeOfTheSystemVolumeShowsAndIsNotStored) {
  box->start();
  forget();
  box->audio.setVolume(speakers, 0, 0.35F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.35F);
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(StartUp, ListenersOfTheMachineDoNothingOnceTheStateIsGone) {
  // The machine's time goes on after the program's has ended.
  VirtualTime program;
  auto gone = AppState::create(box->machine, program.runtime(box->log),
                               std::make_shared<RecordingEngine>(program.background()));
  const auto happens = [&](const auto& event) {
    event();
    settle();
    program.runUntilIdle();
  };
  const auto headset = box->addHeadset();
  happens([&] { box->audio.setDefaultOutput(headset); });
  box->player.setTrack("Song", true, 0);
  for (int poll = 0; poll < 3; ++poll) happens([&] { program.advance(std::chrono::seconds(1)); });
  happens([&] { box->audio.setVolume(headset, 0, 0.2F); });
  ASSERT_EQ(*gone->masterGain(), 0.2F) << "while it lives its listeners are called";
  ASSERT_TRUE(gone->nowPlaying()->has_value());

  const std::weak_ptr<AppState> watch = std::exchange(gone, nullptr);
  program.shutDown();
  ASSERT_TRUE(watch.expired());
  box->audio.clearCalls();
  happens([&] { box->audio.setVolume(headset, 0, 0.7F); });
  happens([&] { box->audio.setVolume(speakers, 0, 0.7F); });
  happens([&] { box->audio.removeDevice(headset); });
  happens([&] { box->addHeadset(); });
  EXPECT_THAT(box->audio.calls(), IsEmpty());
  EXPECT_THAT(box->keys.pressed(), IsEmpty());
}

TEST_F(StartUp, TheRunningStreamsKeepTheStateAlive) {
  box->start();
  const std::weak_ptr<AppState> watch = box->state;
  box->state.reset();
  EXPECT_FALSE(watch.expired());
  box->time.shutDown();
  EXPECT_TRUE(watch.expired());
}

TEST_F(StartUp, ObserversAreToldOfTheFieldTheyAskedForAndOfNoOther) {
  startWithThree();
  int apps = 0;
  int masters = 0;
  const auto first = state().apps().observe([&](const auto&) { ++apps; });
  const auto second = state().masterGain().observe([&](const auto&) { ++masters; });
  state().setGain(0.5F, spotify);
  box->detect();
  EXPECT_EQ(apps, 1) << "a detection result that changes nothing tells nobody";
  EXPECT_EQ(masters, 0);
}

TEST_F(StartUp, TheSharedInstanceIsTheOneThatWasInstalled) {
  box->start();
  AppState::installShared(box->state);
  EXPECT_EQ(&AppState::shared(), box->state.get());
  AppState::installShared(nullptr);
}

TEST(SharedStateDeathTest, UsingItBeforeItWasInstalledStopsTheProcess) {
  EXPECT_DEATH(static_cast<void>(AppState::shared()), "before it was installed");
}

}  // namespace
}  // namespace quillmere
