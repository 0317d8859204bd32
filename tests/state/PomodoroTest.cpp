// The focus block: one application sounds, a break gives the rest back, then it is over.
#include <limits>

#include "StateFixture.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = PomodoroPhase::Kind;

class Pomodoro : public StateFixture {
 protected:
  void SetUp() override { startWithThree(); }
  [[nodiscard]] Kind phase() const { return state().pomodoroPhase()->kind; }
};

TEST_F(Pomodoro, AWholeBlockOfTwentyFiveMinutesAndItsBreak) {
  state().setGain(0.5F, spotify);
  settle();
  forget();
  const auto start = box->time.now();
  state().startPomodoroFocus();
  EXPECT_EQ(*state().pomodoroPhase(), PomodoroPhase::focus(start.advancedBy(1500.0)));
  box->advanceSeconds(1499);
  EXPECT_EQ(phase(), Kind::focus);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  EXPECT_THAT(box->sounds.played(), IsEmpty());
  box->advanceSeconds(1);
  EXPECT_EQ(*state().pomodoroPhase(), PomodoroPhase::rest(start.advancedBy(1800.0)));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass"));
  box->advanceSeconds(299);
  EXPECT_EQ(phase(), Kind::rest);
  box->advanceSeconds(1);
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass", "Hero"));
  EXPECT_THAT(disk.written(), IsEmpty());
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.6F);
  box->advanceSeconds(3600);
  EXPECT_EQ(phase(), Kind::idle) << "one block, not a cycle";
}

TEST_F(Pomodoro, FocusSilencesEverybodyButTheChosenOneByGainAndNotByMute) {
  state().setPomodoroFocusBundleID(editor);
  state().startPomodoroFocus();
  settle();
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
  EXPECT_EQ(box->app(spotify), (AudioApp{spotify, "Spotify", 0.0F, false, std::nullopt}));
  EXPECT_THAT(engineCalls(), ElementsAre(gainCall(spotify, 0.0F), gainCall(zoom, 0.0F)));
}

TEST_F(Pomodoro, WithoutAChosenApplicationEverybodyIsSilenced) {
  state().startPomodoroFocus();
  for (const auto& app : *state().apps()) EXPECT_EQ(app.gain, 0.0F) << app.bundleID;
}

TEST_F(Pomodoro, AChosenApplicationThatIsNotInTheListSilencesEverybody) {
  state().setPomodoroFocusBundleID("org.example.elsewhere");
  state().startPomodoroFocus();
  for (const auto& app : *state().apps()) EXPECT_EQ(app.gain, 0.0F) << app.bundleID;
}

TEST_F(Pomodoro, TheCandidatesOnlyFeedThePicker) {
  state().setFocusCandidateBundleIDs({spotify, editor});
  state().startPomodoroFocus();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
}

TEST_F(Pomodoro, WithoutApplicationsThePhasesRunWithTheirSounds) {
  for (const auto* each : {spotify, zoom, editor}) box->quit(each);
  box->detect();
  state().startPomodoroFocus();
  box->advanceSeconds(1801);
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass", "Hero"));
  EXPECT_THAT(engineCalls(), IsEmpty());
}

TEST_F(Pomodoro, AFocusOfZeroMinutesTurnsToTheBreakOnTheFirstTick) {
  state().setPomodoroFocusMinutes(0);
  state().startPomodoroFocus();
  EXPECT_EQ(phase(), Kind::focus);
  settle();
  EXPECT_EQ(phase(), Kind::rest);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass"));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, FocusAndBreakOfZeroMinutesAreOverOnTheFirstTickWithBothSounds) {
  state().setPomodoroFocusMinutes(0);
  state().setPomodoroBreakMinutes(0);
  state().startPomodoroFocus();
  settle();
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass", "Hero"));
}

TEST_F(Pomodoro, SkippingTheFocusLetsTheNextTickDoWhatTheEndDoes) {
  state().startPomodoroFocus();
  box->advanceSeconds(10);
  state().skipPomodoroToBreak();
  EXPECT_EQ(*state().pomodoroPhase(), PomodoroPhase::focus(box->time.now()));
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F) << "skipping restores nothing itself";
  box->advanceSeconds(1);
  EXPECT_EQ(phase(), Kind::rest);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass"));
}

TEST_F(Pomodoro, SkippingTheBreakLetsTheNextTickDoWhatTheEndDoes) {
  state().startPomodoroFocus();
  state().skipPomodoroToBreak();
  box->advanceSeconds(2);
  state().skipPomodoroToIdle();
  EXPECT_EQ(phase(), Kind::rest);
  box->advanceSeconds(1);
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass", "Hero"));
}

TEST_F(Pomodoro, ASkipThatDoesNotFitThePhaseDoesNothing) {
  state().skipPomodoroToBreak();
  state().skipPomodoroToIdle();
  EXPECT_EQ(phase(), Kind::idle);
  state().startPomodoroFocus();
  const auto focus = *state().pomodoroPhase();
  state().skipPomodoroToIdle();
  EXPECT_EQ(*state().pomodoroPhase(), focus);
  state().skipPomodoroToBreak();
  box->advanceSeconds(1);
  const auto rest = *state().pomodoroPhase();
  state().skipPomodoroToBreak();
  EXPECT_EQ(*state().pomodoroPhase(), rest);
}

TEST_F(Pomodoro, CancellingDuringFocusGivesTheSoundBackWithoutASound) {
  state().setGain(0.5F, spotify);
  state().startPomodoroFocus();
  box->advanceSeconds(60);
  state().cancelPomodoro(false);
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  box->advanceSeconds(3600);
  EXPECT_EQ(box->engine->lastGain(spotify), 0.5F);
  EXPECT_THAT(box->sounds.played(), IsEmpty());
}

TEST_F(Pomodoro, CancellingDuringTheBreakChangesNoGain) {
  state().startPomodoroFocus();
  state().skipPomodoroToBreak();
  box->advanceSeconds(2);
  box->sounds.clear();
  state().setGain(0.4F, spotify);
  settle();
  forget();
  state().cancelPomodoro(false);
  settle();
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.4F);
  EXPECT_THAT(engineCalls(), IsEmpty());
  EXPECT_THAT(box->sounds.played(), IsEmpty());
}

TEST_F(Pomodoro, CancellingWhileIdleRestoresWhateverASilentCancelLeft) {
  state().startPomodoroFocus();
  state().cancelPomodoro(true);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, AStartDuringABlockTakesTheSilenceAsItsSnapshotAndLosesTheGainsFromBefore) {
  state().startPomodoroFocus();
  box->advanceSeconds(10);
  state().startPomodoroFocus();
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
}

TEST_F(Pomodoro, EntriesOfAnEarlierBlockThatNobodyRestoredStayUnlessOverwritten) {
  state().setGain(0.7F, spotify);
  state().startPomodoroFocus();
  box->quit(spotify);
  box->detect();
  state().startPomodoroFocus();
  box->launch(spotify, "Spotify");
  box->detect();
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.7F);
}

TEST_F(Pomodoro, AStartDuringTheBreakBeginsANewBlock) {
  state().startPomodoroFocus();
  state().skipPomodoroToBreak();
  box->advanceSeconds(2);
  state().startPomodoroFocus();
  EXPECT_EQ(phase(), Kind::focus);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  box->advanceSeconds(1500);
  EXPECT_EQ(phase(), Kind::rest);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, ASecondStartLeavesOneTickerAndOneSound) {
  state().startPomodoroFocus();
  state().startPomodoroFocus();
  box->advanceSeconds(1500);
  EXPECT_THAT(box->sounds.played(), ElementsAre("Glass"));
}

TEST_F(Pomodoro, AnApplicationThatAppearsDuringABlockIsNotSilenced) {
  state().startPomodoroFocus();
  box->launch(chrome, "Chrome");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 1.0F);
  state().setGain(0.6F, chrome);
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(chrome), 0.6F) << "it has no entry in the snapshot";
}

TEST_F(Pomodoro, AnApplicationThatLeftDuringABlockLosesItsSavedGain) {
  state().setGain(0.5F, spotify);
  state().startPomodoroFocus();
  box->quit(spotify);
  box->detect();
  state().cancelPomodoro(false);
  box->launch(spotify, "Spotify");
  box->detect();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, ChangingTheFocusApplicationDuringABlockHasNoEffectUntilTheNext) {
  state().setPomodoroFocusBundleID(editor);
  state().startPomodoroFocus();
  state().setPomodoroFocusBundleID(spotify);
  box->advanceSeconds(5);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
}

TEST_F(Pomodoro, AMoveOfTheFocusApplicationsOwnSliderIsUndoneToo) {
  state().setPomodoroFocusBundleID(editor);
  state().startPomodoroFocus();
  state().setGain(0.5F, editor);
  state().setGain(0.5F, spotify);
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(editor), 1.0F);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, AMachineThatSleptThroughTheEndTurnsOnTheFirstTickAfterwards) {
  state().startPomodoroFocus();
  box->advanceSeconds(60);
  box->time.suspendMachine(7200);
  box->advanceSeconds(1);
  EXPECT_EQ(*state().pomodoroPhase(), PomodoroPhase::rest(box->time.now().advancedBy(300.0)));
}

TEST_F(Pomodoro, ADuckDuringABlockBreaksTheSilenceAndItsEndPutsTheZeroBack) {
  state().startPomodoroFocus();
  microphone(zoom, true);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
}

TEST_F(Pomodoro, ABlockBegunDuringADuckKeepsTheLoweredGainInItsSnapshot) {
  microphone(zoom, true);
  state().startPomodoroFocus();
  microphone(zoom, false);
  box->advanceSeconds(2);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F) << "the duck's end breaks the silence";
  state().cancelPomodoro(false);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.3F);
}

TEST_F(Pomodoro, QuittingDuringABlockLosesItAndKeepsTheStoredGains) {
  state().setGain(0.5F, spotify);
  state().setPomodoroFocusMinutes(50);
  state().startPomodoroFocus();
  restart({{spotify, "Spotify"}});
  EXPECT_EQ(phase(), Kind::idle);
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.5F);
  EXPECT_EQ(*state().pomodoroFocusMinutes(), 25);
}

TEST_F(Pomodoro, LengthsBeyondAllBoundsDoNotOverflow) {
  state().setPomodoroFocusMinutes(std::numeric_limits<int>::max());
  state().startPomodoroFocus();
  box->advanceSeconds(5);
  EXPECT_EQ(phase(), Kind::focus);
  state().setPomodoroFocusMinutes(std::numeric_limits<int>::min());
  state().startPomodoroFocus();
  settle();
  EXPECT_EQ(phase(), Kind::rest);
}

TEST_F(Pomodoro, TwoPhasesAreEqualWhenCaseAndDateAre) {
  EXPECT_EQ(PomodoroPhase::idle(), PomodoroPhase::idle());
  EXPECT_EQ(PomodoroPhase::focus(Date{5}), PomodoroPhase::focus(Date{5}));
  EXPECT_NE(PomodoroPhase::focus(Date{5}), PomodoroPhase::focus(Date{6}));
  EXPECT_NE(PomodoroPhase::focus(Date{5}), PomodoroPhase::rest(Date{5}));
}

}  // namespace
}  // namespace quillmere
