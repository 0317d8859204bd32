// What the main window shows, without a window.
#include "views/mainwindow/MainWindowPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class MainWindow : public ViewsFixture {
 protected:
  void make() {
    window = std::make_unique<MainWindowPresenter>(sharedState(), box->runtime, settings, intents());
    window->setVisible(true);
  }
  void TearDown() override { window.reset(); }
  [[nodiscard]] FocusPresenter& focus() const { return *window->focus(); }
  [[nodiscard]] QString profile(int row, int role) const {
    return window->profileList()->data(window->profileList()->index(row), role).toString();
  }

  std::unique_ptr<MainWindowPresenter> window;
};

TEST_F(MainWindow, EmptyMachineIsGreetedQuietly) {
  startViews();
  make();
  EXPECT_EQ(window->greeting(), "Quiet right now.");
  EXPECT_EQ(window->subtitle(), "Open Spotify, Slack, a YouTube tab — apps appear here.");
  EXPECT_FALSE(window->anyApps());
  EXPECT_EQ(window->averageGain(), 0.0);
}

TEST_F(MainWindow, OneSourceIsSingular) {
  box->launch(spotify, "Spotify");
  box->setSounding(spotify, true);
  startViews();
  make();
  EXPECT_EQ(window->greeting(), "Mixing 1 source.");
  EXPECT_EQ(window->subtitle(), "1 app connected.");
}

TEST_F(MainWindow, KnownButSilentApplicationsAreCounted) {
  startWithSounding({});
  make();
  EXPECT_EQ(window->greeting(), "Quiet right now.");
  EXPECT_EQ(window->subtitle(), "3 apps connected.");
  EXPECT_EQ(window->rows()->count(), 3);
  EXPECT_EQ(window->averageGain(), 0.0);
}

TEST_F(MainWindow, CallTakesTheSubtitleWhateverTheNumberOfApplications) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  EXPECT_EQ(window->subtitle(), "Music ducked — a call is active.");
}

TEST_F(MainWindow, AverageGainIsThatOfWhatSounds) {
  startWithSounding({spotify, editor});
  make();
  state().setGain(0.5F, spotify);
  state().setGain(0.0F, zoom);
  EXPECT_DOUBLE_EQ(window->averageGain(), 0.75);
}

TEST_F(MainWindow, WhisperButtonSaysWhatItDoes) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(window->whisperText(), "Engage Whisper Mode");
  window->toggleWhisper();
  EXPECT_EQ(window->whisperText(), "Whisper Mode on — tap to restore");
  EXPECT_TRUE(window->whisperOn());
}

TEST_F(MainWindow, SettingsAreWrittenThrough) {
  startViews();
  make();
  window->setScrollAdjusts(false);
  window->setShowsDuckBanner(false);
  window->setPausesOnDisconnect(false);
  EXPECT_EQ(disk.boolean("scrollOverRowAdjustsVolume"), false);
  EXPECT_EQ(disk.boolean("showDuckBanner"), false);
  EXPECT_EQ(disk.boolean("quillmere.pauseOnHeadphoneDisconnect"), false);
}

TEST_F(MainWindow, FocusIsReadyAtFirst) {
  startViews();
  make();
  EXPECT_EQ(focus().heading(), "Ready to focus");
  EXPECT_EQ(focus().explanation(), "Hit start, quillmere takes care of the noise.");
  EXPECT_EQ(focus().primaryText(), "Start 25-minute focus");
  EXPECT_EQ(focus().primarySymbol(), "play.fill");
  EXPECT_EQ(focus().timeText(), "25:00");
  EXPECT_EQ(focus().phaseWord(), "ready");
  EXPECT_EQ(focus().progress(), 0.0);
  EXPECT_FALSE(focus().running());
}

TEST_F(MainWindow, FocusRunsThroughItsPhases) {
  startWithSounding({spotify});
  make();
  focus().primaryAction();
  EXPECT_EQ(focus().heading(), "Deep work in progress");
  EXPECT_EQ(focus().primaryText(), "Skip to break");
  EXPECT_EQ(focus().primarySymbol(), "forward.end.fill");
  box->advanceSeconds(5 * 60);
  EXPECT_EQ(focus().timeText(), "20:00");
  EXPECT_DOUBLE_EQ(focus().progress(), 0.2);
  focus().primaryAction();
  box->advanceSeconds(1.1);
  EXPECT_EQ(focus().heading(), "Take a breath");
  EXPECT_EQ(focus().primaryText(), "Skip to idle");
  EXPECT_EQ(focus().phaseWord(), "break");
  focus().primaryAction();
  box->advanceSeconds(1.1);
  EXPECT_EQ(focus().heading(), "Ready to focus");
}

TEST_F(MainWindow, CancellingAFocusBlockGivesTheGainsBack) {
  startWithSounding({spotify});
  make();
  focus().primaryAction();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  focus().cancel();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_FALSE(focus().running());
}

TEST_F(MainWindow, PhaseWhoseTickerIsLateReadsZeroAndFull) {
  startViews();
  make();
  focus().primaryAction();
  box->time.jumpWallClock(3600);
  EXPECT_EQ(focus().timeText(), "0:00");
  EXPECT_EQ(focus().progress(), 1.0);
}

TEST_F(MainWindow, FocusCountdownTicksOnlyWhileVisible) {
  startViews();
  make();
  focus().primaryAction();
  QSignalSpy spy(&focus(), &FocusPresenter::timeChanged);
  box->advanceSeconds(3.5);
  EXPECT_EQ(spy.count(), 3);
  window->setVisible(false);
  box->advanceSeconds(10);
  EXPECT_EQ(spy.count(), 3);
}

TEST_F(MainWindow, FocusLengthsAreCutToMinutesAndHeldInTheirRanges) {
  startViews();
  make();
  focus().setFocusLength(0.5);
  EXPECT_EQ(focus().focusLengthText(), "30 min");
  focus().setFocusLength(0.0);
  EXPECT_EQ(focus().focusLengthText(), "5 min");
  focus().setFocusLength(1.0);
  EXPECT_EQ(focus().focusLengthText(), "60 min");
  focus().setBreakLength(0.349);
  EXPECT_EQ(focus().breakLengthText(), "10 min");
  focus().setBreakLength(0.0);
  EXPECT_EQ(focus().breakLengthText(), "1 min");
}

TEST_F(MainWindow, FocusApplicationsAreSortedByNameBehindNone) {
  startWithSounding({});
  make();
  state().setFocusCandidateBundleIDs({spotify, "app.whitenoise"});
  EXPECT_EQ(titles(*focus().appMenu()), QStringList({"* None", "-", "app.whitenoise", "Editor", "Spotify", "Zoom"}));
  choose(*focus().appMenu(), "Spotify");
  EXPECT_EQ(focus().focusAppName(), "Spotify");
  EXPECT_EQ(*state().pomodoroFocusBundleID(), spotify);
  choose(*focus().appMenu(), "None");
  EXPECT_EQ(focus().focusAppName(), "None");
}

TEST_F(MainWindow, DuckTargetIsCutNotRounded) {
  startViews();
  make();
  window->duck()->setTarget(0.305);
  EXPECT_EQ(window->duck()->targetText(), "30%");
  EXPECT_FLOAT_EQ(state().duckRule()->targetGain, 0.305F);
}

TEST_F(MainWindow, RestoreDelayIsCutToMilliseconds) {
  startViews();
  make();
  EXPECT_EQ(window->duck()->delayText(), "1500 ms");
  window->duck()->setDelay(0.5);
  EXPECT_EQ(window->duck()->delayText(), "2500 ms");
  EXPECT_EQ(state().duckRule()->restoreDelayMillis, 2500);
}

TEST_F(MainWindow, DuckListsNameWhatIsKnownAndCountInTheRightNumber) {
  startWithSounding({});
  make();
  auto rule = *state().duckRule();
  rule.triggerBundleIDs = {zoom};
  rule.duckedBundleIDs = {};
  state().setDuckRule(rule);
  EXPECT_EQ(window->duck()->triggerNames(), "Zoom");
  EXPECT_EQ(window->duck()->triggerCountText(), "1 app");
  EXPECT_EQ(window->duck()->duckedCountText(), "0 apps");
}

TEST_F(MainWindow, DuckListsCountWhatHasNoName) {
  startWithSounding({});
  make();
  auto rule = *state().duckRule();
  rule.triggerBundleIDs = {zoom, "org.example.unheard", "org.example.unknown"};
  rule.duckedBundleIDs = {"org.example.unheard"};
  state().setDuckRule(rule);
  EXPECT_EQ(window->duck()->triggerNames(), "Zoom, + 2 more");
  EXPECT_EQ(window->duck()->duckedNames(), "");
  EXPECT_EQ(window->duck()->duckedCountText(), "1 app");
}

TEST_F(MainWindow, DuckCardFollowsTheCall) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(window->duck()->statusText(), "Standing by");
  microphone(zoom, true);
  EXPECT_EQ(window->duck()->statusText(), "Ducking now");
}

TEST_F(MainWindow, ProfilesAreListedWithTheirSizes) {
  startWithSounding({});
  make();
  window->profiles()->saveCurrent();
  ASSERT_EQ(window->profileList()->count(), 2);
  EXPECT_EQ(profile(1, ProfileListModel::NameRole), "Untitled 2");
  EXPECT_EQ(profile(1, ProfileListModel::SizeTextRole), "3 apps");
  EXPECT_EQ(profile(0, ProfileListModel::SizeTextRole), "0 apps");
}

TEST_F(MainWindow, ProfilesAreAppliedDuplicatedAndDeleted) {
  startWithSounding({});
  make();
  window->profiles()->saveCurrent();
  window->profileList()->apply(1);
  EXPECT_EQ(profile(1, ProfileListModel::ActiveRole), "true");
  window->profileList()->duplicate(1);
  EXPECT_EQ(window->profileList()->count(), 3);
  window->profileList()->remove(0);
  EXPECT_EQ(window->profileList()->count(), 2);
  EXPECT_EQ(profile(0, ProfileListModel::NameRole), "Untitled 2");
  window->profileList()->remove(17);
  EXPECT_EQ(window->profileList()->count(), 2);
}

}  // namespace
}  // namespace quillmere
