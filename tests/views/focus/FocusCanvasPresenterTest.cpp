// What the page of the focus block shows.
#include "views/focus/FocusCanvasPresenter.h"

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class FocusPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<FocusCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  [[nodiscard]] FocusPresenter& focus() const { return *page->focus(); }

  std::unique_ptr<FocusCanvasPresenter> page;
};

TEST_F(FocusPage, FocusIsReadyAtFirst) {
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

TEST_F(FocusPage, FocusRunsThroughItsPhases) {
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

TEST_F(FocusPage, CancellingAFocusBlockGivesTheGainsBack) {
  startWithSounding({spotify});
  make();
  focus().primaryAction();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  focus().cancel();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_FALSE(focus().running());
}

TEST_F(FocusPage, PhaseWhoseTickerIsLateReadsZeroAndFull) {
  startViews();
  make();
  focus().primaryAction();
  box->time.jumpWallClock(3600);
  EXPECT_EQ(focus().timeText(), "0:00");
  EXPECT_EQ(focus().progress(), 1.0);
}

TEST_F(FocusPage, FocusLengthsAreCutToMinutesAndHeldInTheirRanges) {
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

TEST_F(FocusPage, FocusApplicationsAreSortedByNameBehindNone) {
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

}  // namespace
}  // namespace quillmere
