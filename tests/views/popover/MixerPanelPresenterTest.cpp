// What the popover says and does, without a window.
#include "views/popover/MixerPanelPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class MixerPanel : public ViewsFixture {
 protected:
  void make() {
    panel = std::make_unique<MixerPanelPresenter>(sharedState(), box->runtime, settings, intents());
    panel->setVisible(true);
  }
  void TearDown() override { panel.reset(); }
  [[nodiscard]] SleepTimerPresenter& timer() const { return *panel->sleepTimer(); }

  std::unique_ptr<MixerPanelPresenter> panel;
};

TEST_F(MixerPanel, QuietMachineHasNoRowsAndAMasterThatIsNotLive) {
  startWithSounding({});
  make();
  EXPECT_FALSE(panel->anyLive());
  EXPECT_EQ(panel->rows()->count(), 0);
  EXPECT_FALSE(panel->output()->live());
}

TEST_F(MixerPanel, LiveCountFollowsTheRows) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(panel->liveCountText(), "1 live");
  sound(editor, true);
  EXPECT_EQ(panel->liveCountText(), "2 live");
  EXPECT_TRUE(panel->anyLive());
}

TEST_F(MixerPanel, WhisperButtonSaysWhatATapDoes) {
  startWithSounding({spotify});
  make();
  EXPECT_EQ(panel->whisperToolTip(), "Whisper Mode (one-tap shush)");
  EXPECT_EQ(panel->whisperColor(), "textSecondary");
  QSignalSpy spy(panel.get(), &MixerPanelPresenter::whisperChanged);
  panel->toggleWhisper();
  EXPECT_EQ(panel->whisperToolTip(), "Whisper Mode on — tap to restore");
  EXPECT_EQ(panel->whisperColor(), "brandSage");
  EXPECT_EQ(spy.count(), 1);
  EXPECT_TRUE(*state().isWhisperMode());
}

TEST_F(MixerPanel, WindowAndQuitAreAskedOfTheProgram) {
  startViews();
  make();
  panel->openWindow();
  panel->quit();
  EXPECT_EQ(windowsOpened, 1);
  EXPECT_EQ(quits, 1);
}

TEST_F(MixerPanel, BannerIsAbsentWithoutACall) {
  startWithSounding({spotify});
  make();
  EXPECT_FALSE(panel->bannerShown());
}

TEST_F(MixerPanel, BannerTellsThatMusicIsDucked) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  EXPECT_TRUE(panel->bannerShown());
  EXPECT_EQ(panel->bannerText(), "Music ducked while you're on a call.");
}

TEST_F(MixerPanel, CallDuringWhichNothingWasLoweredIsTold) {
  box->launch(zoom, "Zoom");
  box->setSounding(zoom, true);
  startViews();
  make();
  microphone(zoom, true);
  EXPECT_TRUE(panel->bannerShown());
  EXPECT_EQ(panel->bannerText(), "On a call — the call's own audio can't be ducked.");
}

TEST_F(MixerPanel, BannerKeepsItsWordsWhileItLeaves) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  microphone(zoom, false);
  box->advanceSeconds(5);
  EXPECT_FALSE(panel->bannerShown());
  EXPECT_EQ(panel->bannerText(), "Music ducked while you're on a call.");
}

TEST_F(MixerPanel, BannerCanBeTurnedOffInTheMiddleOfACall) {
  startWithSounding({spotify});
  make();
  microphone(zoom, true);
  settings->setShowDuckBanner(false);
  EXPECT_FALSE(panel->bannerShown());
  EXPECT_TRUE(*state().isDucking());
  EXPECT_TRUE(panel->rows()->row(0)->ducked());
}

TEST_F(MixerPanel, ProfileIsDefaultWhileNoneIsActive) {
  startViews();
  make();
  EXPECT_EQ(panel->profiles()->activeName(), "Default");
}

TEST_F(MixerPanel, ActiveProfileIsNamedAndMarked) {
  startViews();
  make();
  state().addProfile("Evening");
  choose(*panel->profiles()->menu(), "Evening");
  EXPECT_EQ(panel->profiles()->activeName(), "Evening");
  EXPECT_EQ(titles(*panel->profiles()->menu()),
            QStringList({"Default", "* Evening", "-", "Save current as new profile…", "Open quillmere window…"}));
}

TEST_F(MixerPanel, DeletedActiveProfileReadsDefault) {
  startViews();
  make();
  state().addProfile("Evening");
  const auto id = state().profiles()->back().id;
  state().applyProfile(id);
  state().deleteProfile(id);
  EXPECT_EQ(panel->profiles()->activeName(), "Default");
}

TEST_F(MixerPanel, NewProfileIsNumberedByTheCountWhetherOrNotTheNameIsTaken) {
  startViews();
  make();
  state().addProfile("Untitled 4");
  state().addProfile("Evening");
  choose(*panel->profiles()->menu(), "Save current as new profile…");
  EXPECT_EQ(state().profiles()->back().name, "Untitled 4");
}

TEST_F(MixerPanel, ProfileMenuOpensTheWindowToo) {
  startViews();
  make();
  choose(*panel->profiles()->menu(), "Open quillmere window…");
  EXPECT_EQ(windowsOpened, 1);
}

TEST_F(MixerPanel, SleepTimerOffersFiveLengths) {
  startViews();
  make();
  EXPECT_FALSE(timer().running());
  EXPECT_EQ(titles(*timer().menu()),
            QStringList({"15 minutes", "30 minutes", "45 minutes", "60 minutes", "90 minutes"}));
}

TEST_F(MixerPanel, RunningTimerCountsDownInMinutesThatAreNoHours) {
  startViews();
  make();
  choose(*timer().menu(), "90 minutes");
  EXPECT_TRUE(timer().running());
  EXPECT_EQ(timer().remaining(), "90:00");
  box->advanceSeconds(53);
  EXPECT_EQ(timer().remaining(), "89:07");
}

TEST_F(MixerPanel, CountdownIsToldOnceASecondWhileVisible) {
  startViews();
  make();
  state().startSleepTimer(15);
  QSignalSpy spy(&timer(), &SleepTimerPresenter::remainingChanged);
  box->advanceSeconds(10.5);
  EXPECT_EQ(spy.count(), 10);
}

TEST_F(MixerPanel, HiddenCountdownDoesNotTick) {
  startViews();
  make();
  state().startSleepTimer(15);
  panel->setVisible(false);
  QSignalSpy spy(&timer(), &SleepTimerPresenter::remainingChanged);
  box->advanceSeconds(30);
  EXPECT_EQ(spy.count(), 0);
  panel->setVisible(true);
  EXPECT_EQ(spy.count(), 1);
  EXPECT_EQ(timer().remaining(), "14:30");
}

TEST_F(MixerPanel, TimerPastItsEndReadsZero) {
  startViews();
  make();
  state().startSleepTimer(15);
  box->time.jumpWallClock(3600);
  EXPECT_EQ(timer().remaining(), "0:00");
}

TEST_F(MixerPanel, TapOnTheCountdownCancels) {
  startViews();
  make();
  state().startSleepTimer(15);
  timer().cancel();
  EXPECT_FALSE(timer().running());
  EXPECT_EQ(timer().remaining(), "");
}

TEST_F(MixerPanel, NothingFollowsTheStateOnceThePanelIsGone) {
  startWithSounding({spotify});
  make();
  state().startSleepTimer(15);
  const auto users = box->state.use_count();
  panel.reset();
  EXPECT_LT(box->state.use_count(), users);
  state().setMasterGain(0.3F);
  state().setGain(0.3F, spotify);
  state().addProfile("Later");
  settings->setShowDuckBanner(false);
  box->advanceSeconds(3);
}

}  // namespace
}  // namespace quillmere
