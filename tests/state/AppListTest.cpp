// How detection results become the list, who is live, what comes back from an earlier run.
#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class AppList : public StateFixture {
 protected:
  [[nodiscard]] std::vector<std::string> listed() const {
    std::vector<std::string> ids;
    for (const auto& app : *state().apps()) ids.push_back(app.bundleID);
    return ids;
  }
};

TEST_F(AppList, ANewApplicationStartsAtUnityUnmutedUnrouted) {
  startWithThree();
  EXPECT_EQ(box->app(spotify), (AudioApp{spotify, "Spotify", 1.0F, false, std::nullopt}));
  EXPECT_THAT(engineCalls(), IsEmpty());
  EXPECT_FALSE(disk.has("quillmere.appsState")) << "detection writes nothing";
}

TEST_F(AppList, AGainSetByTheUserSurvivesAnyNumberOfResults) {
  startWithThree();
  state().setGain(0.5F, spotify);
  for (int result = 0; result < 50; ++result) box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.5F)));
}

TEST_F(AppList, TheOrderIsTheDetectorsAndThePreviousOrderPlaysNoPart) {
  startWithThree();
  EXPECT_THAT(listed(), ElementsAre(editor, spotify, zoom));
  box->setSounding(zoom, true);
  box->detect();
  EXPECT_THAT(listed(), ElementsAre(zoom, editor, spotify));
}

TEST_F(AppList, AChangedDisplayNameShowsAtOnceAndKeepsTheSettings) {
  startWithThree();
  state().setGain(0.5F, spotify);
  box->workspace.setRunningApplications({{spotify, "Spotify Premium", box->pidOf(spotify)}});
  box->detect();
  EXPECT_THAT(*state().apps(), ElementsAre(AudioApp{spotify, "Spotify Premium", 0.5F, false, std::nullopt}));
}

TEST_F(AppList, StoredSettingsReachTheListAndTheEngineOnceInARun) {
  storeApps({{spotify, "Old name", 0.5F, false, "headset"}});
  startWithThree();
  EXPECT_EQ(box->app(spotify), (AudioApp{spotify, "Spotify", 0.5F, false, "headset"}));
  EXPECT_EQ(box->engine->lastGain(spotify), 0.5F);
  box->quit(spotify);
  box->detect();
  box->launch(spotify, "Spotify");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_THAT(engineCalls(), IsEmpty()) << "no restoration is repeated";
}

TEST_F(AppList, ARestorationRoutesFirstAndThenSetsTheGain) {
  storeApps({{spotify, "Spotify", 0.5F, false, "headset"}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, "headset"), gainCall(spotify, 0.5F)));
}

TEST_F(AppList, ARestorationFollowsTheProcessMapThatItsTapIsMadeFrom) {
  storeApps({{spotify, "Spotify", 0.5F, false, std::nullopt}});
  box->launch(spotify, "Spotify");
  // The background is as quick as it can be: whatever was started before the map has run when the map comes.
  box->engine->setBeforeProcessMap([this] { box->time.runDueOn(box->time.background()); });
  box->start();
  EXPECT_EQ(box->engine->callsBeforeFirstProcessMap(), 0U);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.5F)));
}

TEST_F(AppList, AStoredGainOf1004CausesNoCallButShows) {
  storeApps({{spotify, "Spotify", 1.004F, false, std::nullopt}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.004F);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(AppList, AStoredGainOf101IsSentAsItIs) {
  storeApps({{spotify, "Spotify", 1.01F, false, std::nullopt}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 1.01F)));
}

TEST_F(AppList, AnApplicationStoredAsMutedIsSentZeroAndShowsItsGain) {
  storeApps({{spotify, "Spotify", 0.5F, true, std::nullopt}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.0F)));
  EXPECT_EQ(box->app(spotify), (AudioApp{spotify, "Spotify", 0.5F, true, std::nullopt}));
}

TEST_F(AppList, AStoredRouteAtUnityIsRoutedAndSentNoGain) {
  storeApps({{spotify, "Spotify", 1.0F, false, "headset"}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, "headset")));
}

TEST_F(AppList, ARouteToADeviceThatIsGoneIsSentAsItStandsAndKept) {
  storeApps({{spotify, "Spotify", 1.0F, false, "a device nobody has"}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_THAT(engineCalls(), ElementsAre(routingCall(spotify, "a device nobody has")));
  EXPECT_EQ(box->app(spotify)->routedDeviceUID, "a device nobody has");
}

TEST_F(AppList, WhenTwoStoredEntriesShareAnIdentifierTheFirstStands) {
  storeApps({{spotify, "Spotify", 0.5F, false, std::nullopt}, {spotify, "Spotify", 0.9F, true, std::nullopt}});
  box->launch(spotify, "Spotify");
  box->start();
  EXPECT_EQ(box->app(spotify), (AudioApp{spotify, "Spotify", 0.5F, false, std::nullopt}));
}

TEST_F(AppList, AnEmptyResultEmptiesTheListAndTheNextTakesStoredSettingsOrDefaults) {
  storeApps({{spotify, "Spotify", 0.5F, false, std::nullopt}});
  startWithThree();
  state().setGain(0.8F, spotify);
  state().setGain(0.2F, editor);
  box->workspace.setRunningApplications({});
  box->detect();
  EXPECT_THAT(*state().apps(), IsEmpty());
  settle();
  forget();
  box->workspace.launch(spotify, "Spotify", box->pidOf(spotify));
  box->workspace.launch(editor, "Editor", box->pidOf(editor));
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F) << "what the run began with, not what the user set since";
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
  EXPECT_THAT(engineCalls(), IsEmpty());
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(AppList, AnApplicationThatIsNotInTheListFallsOutOfTheStoreWithTheNextWrite) {
  storeApps({{"org.example.gone", "Gone", 0.5F, false, std::nullopt}});
  startWithThree();
  state().setGain(0.3F, spotify);
  ASSERT_EQ(storedApps().size(), 3U);
  for (const auto& app : storedApps()) EXPECT_NE(app.bundleID, "org.example.gone");
  box->launch("org.example.gone", "Gone");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf("org.example.gone"), 0.5F) << "this run still knows it";
}

TEST_F(AppList, AnApplicationStaysLiveForOneAndAHalfSecondsAndNoResultLonger) {
  startWithThree();
  box->setSounding(spotify, true);
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
  box->setSounding(spotify, false);
  for (int result = 1; result <= 10; ++result) {
    box->detect();
    EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify)) << result * 150 << " ms later";
  }
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), IsEmpty()) << "1650 ms later";
}

TEST_F(AppList, AnApplicationThatOnlyTheEngineHearsIsLive) {
  startWithThree();
  box->engine->setActive({editor});
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(editor));
}

TEST_F(AppList, LiveJoinsWhatTheDetectorAndTheEngineHear) {
  startWithThree();
  box->setSounding(spotify, true);
  box->engine->setActive({editor});
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), UnorderedElementsAre(editor, spotify));
}

TEST_F(AppList, AWallClockSetBackKeepsAnApplicationLiveUntilItCatchesUp) {
  startWithThree();
  box->setSounding(spotify, true);
  box->detect();
  box->setSounding(spotify, false);
  box->time.jumpWallClock(-10.0);
  box->advanceSeconds(9);
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
  box->advanceSeconds(3);
  EXPECT_THAT(*state().liveBundleIDs(), IsEmpty());
}

TEST_F(AppList, TheEngineGetsTheRawProcessList) {
  startWithThree();
  box->audio.addProcess({"com.spotify.client.helper", 4711, true, false});
  box->detect();
  ASSERT_EQ(box->engine->processes().size(), 4U);
  EXPECT_EQ(box->engine->processes().back().bundleID, "com.spotify.client.helper");
}

TEST_F(AppList, ASoundingHelperMakesItsApplicationLive) {
  startWithThree();
  box->audio.addProcess({"com.spotify.client.Helper (Renderer)", 4711, true, false});
  box->detect();
  EXPECT_THAT(*state().liveBundleIDs(), ElementsAre(spotify));
}

TEST_F(AppList, TheSameMicrophoneSetInTwoResultsEvaluatesDuckingOnlyOnce) {
  startWithThree();
  microphone(zoom, true);
  EXPECT_TRUE(*state().isDucking());
  auto rule = *state().duckRule();
  rule.triggerBundleIDs = {};
  state().setDuckRule(rule);
  box->advanceSeconds(10);
  EXPECT_TRUE(*state().isDucking()) << "an evaluation would have found no trigger left";
  microphone(editor, true);
  box->advanceSeconds(2);
  EXPECT_FALSE(*state().isDucking());
}

TEST_F(AppList, TheMicrophoneSetIsComparedAsASetWhateverTheOrderOfProcesses) {
  startWithThree();
  box->setListening(editor, true);
  box->setListening(zoom, true);
  box->detect();
  int told = 0;
  const auto watch = state().micBundleIDs().observe([&](const auto&) { ++told; });
  // The same two, listed the other way round.
  box->quit(editor);
  box->launch(editor, "Editor");
  box->setListening(editor, true);
  box->detect();
  EXPECT_EQ(told, 0);
  EXPECT_THAT(*state().micBundleIDs(), UnorderedElementsAre(editor, zoom));
}

}  // namespace
}  // namespace quillmere
