// Auto-Duck: who is lowered, when everything comes back, and the settled oddities.
#include <limits>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class AutoDuck : public StateFixture {
 protected:
  void SetUp() override { startWithThree(); }
  void changeRule(const std::function<void(DuckRule&)>& change) const {
    auto rule = *state().duckRule();
    change(rule);
    state().setDuckRule(rule);
  }
};

TEST_F(AutoDuck, ACallLowersMusicToTheTargetAndTellsTheEngine) {
  microphone(zoom, true);
  EXPECT_TRUE(*state().isDucking());
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.3F)));
}

TEST_F(AutoDuck, ADuckAloneWritesNothingToTheSettings) {
  microphone(zoom, true);
  microphone(zoom, false);
  box->advanceSeconds(3);
  EXPECT_THAT(disk.written(), IsEmpty());
}

TEST_F(AutoDuck, AfterTheCallTheGainsComeBackOnceTheDelayHasPassed) {
  state().setGain(0.8F, spotify);
  microphone(zoom, true);
  microphone(zoom, false);
  box->time.advance(std::chrono::milliseconds(1499));
  EXPECT_TRUE(*state().isDucking());
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
  box->time.advance(std::chrono::milliseconds(1));
  EXPECT_FALSE(*state().isDucking());
  EXPECT_THAT(*state().duckedBundleIDs(), IsEmpty());
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  settle();
  EXPECT_EQ(box->engine->lastGain(spotify), 0.8F);
}

TEST_F(AutoDuck, TheChangeIsOneStepAndTheFadeLengthIsReadByNobody) {
  changeRule([](DuckRule& rule) { rule.fadeMillis = 60000; });
  microphone(zoom, true);
  box->advanceSeconds(5);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.3F)));
}

TEST_F(AutoDuck, WithoutTriggersNoDuckEverBegins) {
  changeRule([](DuckRule& rule) { rule.triggerBundleIDs = {}; });
  microphone(zoom, true);
  EXPECT_FALSE(*state().isDucking());
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(AutoDuck, WithoutCandidatesTheDuckIsOnAndLowersNobody) {
  changeRule([](DuckRule& rule) { rule.duckedBundleIDs = {}; });
  const auto before = *state().apps();
  microphone(zoom, true);
  EXPECT_TRUE(*state().isDucking());
  EXPECT_THAT(*state().duckedBundleIDs(), IsEmpty());
  EXPECT_EQ(*state().apps(), before);
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(AutoDuck, AnApplicationThatStandsBelowTheTargetIsRaisedToIt) {
  state().setGain(0.1F, spotify);
  microphone(zoom, true);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
}

TEST_F(AutoDuck, AMutedApplicationIsLoweredLikeAnyOther) {
  state().toggleMute(spotify);
  microphone(zoom, true);
  EXPECT_TRUE(box->app(spotify)->muted);
  EXPECT_EQ(box->engine->lastGain(spotify), 0.3F);
}

TEST_F(AutoDuck, ACandidateOnTheMicrophoneAtTheStartIsSkippedForTheWholeDuck) {
  box->launch(chrome, "Chrome");
  box->setListening(chrome, true);
  microphone(zoom, true);
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
  microphone(chrome, false);
  EXPECT_TRUE(*state().isDucking());
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 1.0F);
}

TEST_F(AutoDuck, ABrowserThatIsTriggerAndCandidateIsNotLoweredByItsOwnCall) {
  box->launch(chrome, "Chrome");
  microphone(chrome, true);
  EXPECT_TRUE(*state().isDucking());
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 1.0F);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
}

TEST_F(AutoDuck, ALoweredApplicationThatOpensTheMicrophoneIsBackAtOnce) {
  box->launch(chrome, "Chrome");
  box->detect();
  state().setGain(0.9F, chrome);
  microphone(zoom, true);
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 0.3F);
  microphone(chrome, true);
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 0.9F);
  EXPECT_EQ(box->engine->lastGain(chrome), 0.9F);
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
}

TEST_F(AutoDuck, TheDuckStaysOnEvenIfTheLastLoweredApplicationWasReleased) {
  microphone(zoom, true);
  microphone(spotify, true);
  EXPECT_TRUE(*state().isDucking());
  EXPECT_THAT(*state().duckedBundleIDs(), IsEmpty());
}

TEST_F(AutoDuck, ADelayOfZeroStillGoesThroughATask) {
  changeRule([](DuckRule& rule) { rule.restoreDelayMillis = 0; });
  microphone(zoom, true);
  // Posted before the state looks at the change: it runs after that look and before any task that the look has started.
  std::optional<bool> wasDuckingBeforeTheTask;
  const auto watch = state().micBundleIDs().observe(
      [&](const auto&) { box->time.main().post([&] { wasDuckingBeforeTheTask = *state().isDucking(); }); });
  microphone(zoom, false);
  EXPECT_EQ(wasDuckingBeforeTheTask, true);
  EXPECT_FALSE(*state().isDucking());
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(AutoDuck, ANegativeDelayCountsAsZero) {
  changeRule([](DuckRule& rule) { rule.restoreDelayMillis = -5000; });
  microphone(zoom, true);
  microphone(zoom, false);
  EXPECT_FALSE(*state().isDucking());
}

TEST_F(AutoDuck, ADelayBeyondAllBoundsIsJustVeryLong) {
  changeRule([](DuckRule& rule) { rule.restoreDelayMillis = std::numeric_limits<std::int64_t>::max(); });
  microphone(zoom, true);
  microphone(zoom, false);
  box->advanceSeconds(60);
  EXPECT_TRUE(*state().isDucking());
}

TEST_F(AutoDuck, ATriggerThatIsBackWithinTheDelayDoesNotStopTheWaitingRestore) {
  microphone(zoom, true);
  microphone(zoom, false);
  microphone(zoom, true);
  EXPECT_TRUE(*state().isDucking());
  box->advanceSeconds(2);
  EXPECT_FALSE(*state().isDucking()) << "the restore ran although the trigger holds the microphone";
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_THAT(*state().micBundleIDs(), ElementsAre(zoom));
  microphone(editor, true);
  EXPECT_TRUE(*state().isDucking()) << "the next change of the microphones starts a fresh duck";
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
}

TEST_F(AutoDuck, AnotherMicrophoneUserThatIsNoTriggerStartsTheDelayAgain) {
  microphone(zoom, true);
  microphone(zoom, false);
  box->time.advance(std::chrono::milliseconds(900));
  microphone(editor, true);
  box->time.advance(std::chrono::milliseconds(1400));
  EXPECT_TRUE(*state().isDucking());
  box->time.advance(std::chrono::milliseconds(100));
  EXPECT_FALSE(*state().isDucking());
}

TEST_F(AutoDuck, ASecondDuckTakesItsSnapshotFromTheRestoredGain) {
  state().setGain(0.8F, spotify);
  for (int call = 0; call < 2; ++call) {
    microphone(zoom, true);
    EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
    microphone(zoom, false);
    box->advanceSeconds(2);
    EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  }
}

TEST_F(AutoDuck, ASliderMovedDuringADuckIsOverwrittenByItsEnd) {
  microphone(zoom, true);
  state().setGain(0.6F, spotify);
  settle();
  EXPECT_EQ(box->engine->lastGain(spotify), 0.6F);
  EXPECT_FLOAT_EQ(storedApps().at(1).gain, 0.6F);
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(AutoDuck, ALoweredGainReachesTheStoreWithTheNextChangeOfAnyApplication) {
  microphone(zoom, true);
  state().setGain(0.5F, editor);
  EXPECT_THAT(storedApps(), UnorderedElementsAre(AudioApp{spotify, "Spotify", 0.3F, false, std::nullopt},
                                                 AudioApp{editor, "Editor", 0.5F, false, std::nullopt},
                                                 AudioApp{zoom, "Zoom", 1.0F, false, std::nullopt}));
}

TEST_F(AutoDuck, AnApplicationThatAppearsDuringADuckIsNotLowered) {
  microphone(zoom, true);
  box->launch(chrome, "Chrome");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 1.0F);
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
}

TEST_F(AutoDuck, AnApplicationThatIsBackAtTheReleaseGetsItsSavedGain) {
  state().setGain(0.8F, spotify);
  microphone(zoom, true);
  box->quit(spotify);
  box->detect();
  box->launch(spotify, "Spotify");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  EXPECT_EQ(box->engine->lastGain(spotify), 0.8F);
}

TEST_F(AutoDuck, AnApplicationThatIsGoneAtTheReleaseLosesItsSavedGainWithoutAWord) {
  state().setGain(0.8F, spotify);
  microphone(zoom, true);
  box->quit(spotify);
  microphone(zoom, false);
  box->advanceSeconds(2);
  settle();
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.8F), gainCall(spotify, 0.3F)));
  box->launch(spotify, "Spotify");
  box->detect();
  box->advanceSeconds(10);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F) << "what an application begins with that this run did not know before";
}

TEST_F(AutoDuck, AnApplicationThatLeftTheListAndOpensTheMicrophoneDuringADuckLosesItsSavedGain) {
  microphone(zoom, true);
  box->workspace.terminate(spotify);
  box->detect();
  microphone(spotify, true);
  EXPECT_THAT(*state().duckedBundleIDs(), IsEmpty());
  box->workspace.launch(spotify, "Spotify", box->pidOf(spotify));
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.3F)));
}

TEST_F(AutoDuck, ARuleChangedDuringADuckKeepsTheLoweredSet) {
  microphone(zoom, true);
  changeRule([](DuckRule& rule) { rule.duckedBundleIDs = {editor}; });
  box->advanceSeconds(5);
  EXPECT_THAT(*state().duckedBundleIDs(), ElementsAre(spotify));
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
}

TEST_F(AutoDuck, TheEngineIsSentTheTargetThatStandsWhenItsTaskRuns) {
  // The rule changes between the duck and the background task that tells the engine.
  const auto watch = state().isDucking().observe([&](bool ducks) {
    if (ducks) changeRule([](DuckRule& rule) { rule.targetGain = 0.3F; });
  });
  const auto after = state().duckedBundleIDs().observe([&](const auto& ducked) {
    if (!ducked.empty()) changeRule([](DuckRule& rule) { rule.targetGain = 0.2F; });
  });
  microphone(zoom, true);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.2F)));
}

TEST_F(AutoDuck, QuittingDuringADuckRestoresNothingAndTheNextStartShowsTheLastStoredGains) {
  state().setGain(0.8F, spotify);
  microphone(zoom, true);
  restart({{spotify, "Spotify"}, {zoom, "Zoom"}});
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  EXPECT_FALSE(*state().isDucking());
}

TEST_F(AutoDuck, AProfileAppliedDuringADuckIsOverwrittenForTheLoweredApplications) {
  state().setGain(0.9F, spotify);
  state().setGain(0.9F, editor);
  state().addProfile("Loud");
  state().setGain(0.8F, spotify);
  microphone(zoom, true);
  state().applyProfile(state().profiles()->back().id);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.9F);
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.8F);
  EXPECT_FLOAT_EQ(box->gainOf(editor), 0.9F);
}

}  // namespace
}  // namespace quillmere
