// The plain operations: memory, then the store, then the engine.
#include <algorithm>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Method = MemoryAudioHardware::Method;

class MixerOperations : public StateFixture {};

TEST_F(MixerOperations, SetGainOfAnUnknownApplicationDoesNothingAtAll) {
  startWithThree();
  const auto before = *state().apps();
  state().setGain(0.5F, "unknown");
  settle();
  EXPECT_EQ(*state().apps(), before);
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(MixerOperations, UnknownApplicationsAreNeitherMutedNorRouted) {
  startWithThree();
  const auto before = *state().apps();
  state().toggleMute("unknown");
  state().setRouting("headset", "unknown");
  settle();
  EXPECT_EQ(*state().apps(), before);
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(MixerOperations, SetGainChangesTheListThenStoresTheWholeListThenTellsTheEngine) {
  startWithThree();
  state().setGain(0.5F, spotify);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.appsState"));
  EXPECT_EQ(storedApps(), *state().apps());
  EXPECT_EQ(storedApps().size(), 3U);
  EXPECT_THAT(engineCalls(), IsEmpty()) << "the engine is called from the background, not inside the gesture";
  settle();
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.5F)));
}

TEST_F(MixerOperations, TheLastPositionOfADragIsTheLastThatTheEngineHears) {
  startWithThree();
  for (int step = 100; step >= 0; --step) state().setGain(static_cast<float>(step) / 100.0F, spotify);
  settle();
  ASSERT_EQ(engineCalls().size(), 101U);
  EXPECT_EQ(engineCalls().back(), gainCall(spotify, 0.0F));
}

TEST_F(MixerOperations, SetGainOnAMutedApplicationKeepsItMutedAndMakesItAudible) {
  startWithThree();
  state().toggleMute(spotify);
  settle();
  forget();
  state().setGain(0.7F, spotify);
  settle();
  EXPECT_TRUE(box->app(spotify)->muted);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.7F)));
}

TEST_F(MixerOperations, MutingSendsZeroAndStores) {
  startWithThree();
  state().toggleMute(spotify);
  settle();
  EXPECT_TRUE(box->app(spotify)->muted);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.appsState"));
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.0F)));
}

TEST_F(MixerOperations, UnmutingSendsExactlyOneToTheEngineWhateverTheGain) {
  startWithThree();
  state().setGain(0.4F, spotify);
  settle();
  forget();
  state().toggleMute(spotify);
  state().toggleMute(spotify);
  settle();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.4F);
  EXPECT_FALSE(box->app(spotify)->muted);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.0F), gainCall(spotify, 1.0F)));
}

TEST_F(MixerOperations, RoutingIsStoredAndSent) {
  startWithThree();
  state().setRouting("headset", spotify);
  settle();
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, "headset");
  EXPECT_EQ(storedApps(), *state().apps());
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, "headset")));
}

TEST_F(MixerOperations, ARouteThatIsTakenBackIsGoneFromTheStoreAndSentAsAbsent) {
  startWithThree();
  state().setRouting("headset", spotify);
  settle();
  ASSERT_EQ(storedApps().at(1).routedDeviceUID, "headset");
  forget();
  state().setRouting(std::nullopt, spotify);
  settle();
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, std::nullopt);
  EXPECT_EQ(storedApps(), *state().apps());
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, std::nullopt)));
}

TEST_F(MixerOperations, AnAbsentRouteOfAnApplicationThatHasNoneIsStoredAndSentAllTheSame) {
  startWithThree();
  state().setRouting(std::nullopt, spotify);
  settle();
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, std::nullopt);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.appsState"));
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, std::nullopt)));
}

TEST_F(MixerOperations, TheListsOwnElementsMayNameTheApplication) {
  // The list that the name is in goes while the operation changes it.
  startWithThree();
  const auto first = [this]() -> const AudioApp& { return state().apps()->front(); };
  const std::string bundleID = first().bundleID;
  state().setRouting("a device with a name of some length", first().bundleID);
  state().setGain(0.5F, first().bundleID);
  state().toggleMute(first().bundleID);
  state().toggleMute(first().bundleID);
  state().setRouting(first().routedDeviceUID, first().bundleID);
  settle();
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(bundleID, "a device with a name of some length"),
                                         gainCall(bundleID, 0.5F), gainCall(bundleID, 0.0F), gainCall(bundleID, 1.0F),
                                         routingCall(bundleID, "a device with a name of some length")));
}

TEST_F(MixerOperations, TheRouteOfOneApplicationMayBeGivenToAnother) {
  startWithThree();
  state().setRouting("a device with a name of some length", spotify);
  settle();
  forget();
  for (const auto& app : std::vector<AudioApp>(*state().apps())) {
    if (app.bundleID == spotify) continue;
    const auto& list = *state().apps();
    const auto routed = std::ranges::find(list, spotify, &AudioApp::bundleID);
    state().setRouting(routed->routedDeviceUID, app.bundleID);
  }
  settle();
  EXPECT_THAT(engineCalls(), testing::UnorderedElementsAre(routingCall(zoom, "a device with a name of some length"),
                                                           routingCall(editor, "a device with a name of some length")));
}

TEST_F(MixerOperations, TheMasterGoesToTheHardwareAtOnceAndNeverToTheEngine) {
  startWithThree();
  state().setMasterGain(0.25F);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.25F);
  EXPECT_EQ(disk.real("quillmere.masterGain"), 0.25);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.25F);
  settle();
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(MixerOperations, TheMasterStandsEvenIfTheHardwareRefusesIt) {
  startWithThree();
  box->audio.fail({Method::writeFloat32}, unspecifiedError, MemoryAudioHardware::always);
  state().setMasterGain(0.25F);
  EXPECT_EQ(box->audio.volume(speakers, 0), 0.6F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.25F);
  EXPECT_EQ(disk.real("quillmere.masterGain"), 0.25);
}

TEST_F(MixerOperations, TheEchoOfItsOwnWriteLeavesTheMasterAlone) {
  startWithThree();
  int told = 0;
  const auto watch = state().masterGain().observe([&](float) { ++told; });
  box->audio.clearCalls();
  state().setMasterGain(0.25F);
  settle();
  ASSERT_GE(box->audio.callCount(Method::readFloat32), 1) << "the echo has come";
  EXPECT_EQ(told, 1);
  EXPECT_EQ(box->audio.callCount(Method::writeFloat32), 1);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.masterGain"));
}

TEST_F(MixerOperations, CompletingTheOnboardingIsStored) {
  box->start();
  state().completeOnboarding();
  EXPECT_TRUE(*state().hasCompletedOnboarding());
  EXPECT_EQ(disk.boolean("quillmere.onboardingCompleted"), true);
  restart({});
  EXPECT_TRUE(*state().hasCompletedOnboarding());
}

TEST_F(MixerOperations, AssigningTheDuckRuleStoresItAndEvaluatesNothing) {
  startWithThree();
  auto rule = *state().duckRule();
  rule.duckedBundleIDs = {editor};
  rule.targetGain = 0.1F;
  state().setDuckRule(rule);
  settle();
  EXPECT_EQ(*state().duckRule(), rule);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.duckRule"));
  EXPECT_FALSE(*state().isDucking());
  EXPECT_THAT(engineCalls(), IsEmpty());
  restart({});
  EXPECT_EQ(*state().duckRule(), rule);
}

TEST_F(MixerOperations, FocusCandidatesAndTheHeadphoneSwitchAreStored) {
  box->start();
  forget();
  state().setFocusCandidateBundleIDs({editor});
  state().setPauseOnHeadphoneDisconnect(false);
  EXPECT_THAT(disk.written(), ElementsAre("quillmere.focusCandidates", "quillmere.pauseOnHeadphoneDisconnect"));
  restart({});
  EXPECT_THAT(*state().focusCandidateBundleIDs(), ElementsAre(editor));
  EXPECT_FALSE(*state().pauseOnHeadphoneDisconnect());
}

TEST_F(MixerOperations, ThePomodoroSettingsAreBackAtTheirDefaultsAfterARestart) {
  box->start();
  forget();
  state().setPomodoroFocusMinutes(50);
  state().setPomodoroBreakMinutes(10);
  state().setPomodoroFocusBundleID(editor);
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 50);
  EXPECT_EQ(*state().pomodoroBreakMinutes(), 10);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), editor);
  EXPECT_THAT(disk.written(), IsEmpty());
  restart({});
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 25);
  EXPECT_EQ(*state().pomodoroBreakMinutes(), 5);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), std::nullopt);
}

class OutputDeviceChoice : public StateFixture {
 protected:
  void SetUp() override {
    headset = box->addHeadset(0.4F);
    startWithThree();
  }
  AudioObjectID headset = 0;
};

TEST_F(OutputDeviceChoice, ChoosingADeviceMakesItTheDefaultAndTakesItsVolume) {
  state().setOutputDeviceUID("headset");
  EXPECT_EQ(box->audio.defaultOutput(), headset);
  EXPECT_EQ(disk.string("quillmere.outputDeviceUID"), "headset");
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.4F);
  EXPECT_FALSE(disk.has("quillmere.masterGain"));
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall()));
}

TEST_F(OutputDeviceChoice, TheVolumeIsWatchedOnTheNewDeviceFromThenOn) {
  state().setOutputDeviceUID("headset");
  box->audio.setVolume(headset, 0, 0.9F);
  settle();
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.9F);
}

TEST_F(OutputDeviceChoice, AssigningThePresentValueDoesNothingAndDoesNotSuppressTheNextLoss) {
  state().setOutputDeviceUID("headset");
  settle();
  forget();
  box->player.setTrack("Song", true, 1);
  box->advanceSeconds(1);
  state().setOutputDeviceUID("headset");
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_THAT(engineCalls(), IsEmpty());
  box->audio.removeDevice(headset);
  settle();
  EXPECT_THAT(box->keys.pressed(), ElementsAre(mediakey::play)) << "the loss counts";
}

TEST_F(OutputDeviceChoice, AnApplicationsRouteMayBeTheChoiceThoughItGoesMeanwhile) {
  state().setRouting("headset", spotify);
  const auto watch =
      state().outputDeviceUID().observe([this](const auto&) { state().setRouting(std::nullopt, spotify); });
  const auto& list = *state().apps();
  state().setOutputDeviceUID(std::ranges::find(list, spotify, &AudioApp::bundleID)->routedDeviceUID);
  EXPECT_EQ(*state().outputDeviceUID(), "headset");
  EXPECT_EQ(box->audio.defaultOutput(), headset);
}

TEST_F(OutputDeviceChoice, AssigningNothingToNothingDoesNothing) {
  state().setOutputDeviceUID(std::nullopt);
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(OutputDeviceChoice, AnAbsentDeviceRemovesTheKeyAndLeavesTheSystemDefaultAlone) {
  state().setOutputDeviceUID("headset");
  settle();
  forget();
  box->audio.clearCalls();
  state().setOutputDeviceUID(std::nullopt);
  EXPECT_FALSE(disk.has("quillmere.outputDeviceUID"));
  EXPECT_EQ(box->audio.defaultOutput(), headset);
  EXPECT_EQ(box->audio.callCount(Method::writeUInt32), 0);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(OutputDeviceChoice, ItsOwnChangeIsNotTakenForADeviceLoss) {
  state().setOutputDeviceUID("headset");
  settle();
  box->player.setTrack("Song", true, 1);
  box->advanceSeconds(1);
  state().setOutputDeviceUID("speakers");
  settle();
  EXPECT_THAT(box->keys.pressed(), IsEmpty());
}

TEST_F(OutputDeviceChoice, ChoosingTheDeviceThatIsTheDefaultAlreadySwallowsTheNextRealLoss) {
  box->audio.setDefaultOutput(headset);
  settle();
  box->player.setTrack("Song", true, 1);
  box->advanceSeconds(1);
  state().setOutputDeviceUID("headset");
  settle();
  box->audio.removeDevice(headset);
  settle();
  EXPECT_THAT(box->keys.pressed(), IsEmpty());
}

TEST_F(OutputDeviceChoice, AfterAFailedChangeTheFieldShowsTheChoiceNotTheFact) {
  state().setOutputDeviceUID("gone");
  settle();
  EXPECT_EQ(*state().outputDeviceUID(), "gone");
  EXPECT_EQ(disk.string("quillmere.outputDeviceUID"), "gone");
  EXPECT_EQ(box->audio.defaultOutput(), speakers);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  EXPECT_THAT(engineCalls(), ElementsAre(refreshCall()));
}

}  // namespace
}  // namespace quillmere
