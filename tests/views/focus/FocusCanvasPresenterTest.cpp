// What the page of the focus block shows.
#include "views/focus/FocusCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class FocusPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<FocusCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  [[nodiscard]] QVariant cell(int row, int role) const { return page->cells()->data(page->cells()->index(row), role); }
  /// Names, with "* " before the chosen one and "-" behind those that can be removed.
  [[nodiscard]] QStringList cells() const {
    QStringList shown;
    for (int row = 0; row < page->cells()->count(); ++row) {
      shown.append((cell(row, FocusCellModel::SelectedRole).toBool() ? "* " : "") +
                   cell(row, FocusCellModel::NameRole).toString() +
                   (cell(row, FocusCellModel::CanRemoveRole).toBool() ? "-" : ""));
    }
    return shown;
  }

  std::unique_ptr<FocusCanvasPresenter> page;
};

TEST_F(FocusPage, IsReadyAtFirst) {
  startViews();
  make();
  EXPECT_EQ(page->heading(), "Ready to focus");
  EXPECT_EQ(page->explanation(), "Hit start, quillmere takes care of the noise.");
  EXPECT_EQ(page->primaryText(), "Start 25-minute focus");
  EXPECT_EQ(page->primarySymbol(), "play.fill");
  EXPECT_EQ(page->timeText(), "25:00");
  EXPECT_EQ(page->phaseWord(), "ready");
  EXPECT_EQ(page->progress(), 0.0);
  EXPECT_FALSE(page->running());
}

TEST_F(FocusPage, RunsThroughItsPhases) {
  startWithSounding({spotify});
  make();
  page->primaryAction();
  EXPECT_EQ(page->heading(), "Deep work in progress");
  EXPECT_EQ(page->explanation(), "Everything's quiet except your focus app.");
  EXPECT_EQ(page->primaryText(), "Skip to break");
  EXPECT_EQ(page->primarySymbol(), "forward.end.fill");
  EXPECT_EQ(page->phaseWord(), "focus");
  EXPECT_TRUE(page->running());
  box->advanceSeconds(5 * 60);
  EXPECT_EQ(page->timeText(), "20:00");
  EXPECT_DOUBLE_EQ(page->progress(), 0.2);
  page->primaryAction();
  box->advanceSeconds(1.1);
  EXPECT_EQ(page->heading(), "Take a breath");
  EXPECT_EQ(page->explanation(), "Volumes restored. Stretch, water, breathe.");
  EXPECT_EQ(page->primaryText(), "Skip to idle");
  EXPECT_EQ(page->primarySymbol(), "forward.end.fill");
  EXPECT_EQ(page->phaseWord(), "break");
  page->primaryAction();
  box->advanceSeconds(1.1);
  EXPECT_EQ(page->heading(), "Ready to focus");
}

TEST_F(FocusPage, CancellingABlockGivesTheGainsBack) {
  startWithSounding({spotify});
  make();
  page->primaryAction();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 0.0F);
  page->cancel();
  EXPECT_FLOAT_EQ(box->gainOf(spotify), 1.0F);
  EXPECT_FALSE(page->running());
}

TEST_F(FocusPage, PhaseWhoseTickerIsLateReadsZeroAndFull) {
  startViews();
  make();
  page->primaryAction();
  box->time.jumpWallClock(3600);
  EXPECT_EQ(page->timeText(), "0:00");
  EXPECT_EQ(page->progress(), 1.0);
}

TEST_F(FocusPage, MinutesAreNotWrappedIntoHours) {
  startViews();
  make();
  state().setPomodoroFocusMinutes(75);
  EXPECT_EQ(page->timeText(), "75:00");
  page->primaryAction();
  EXPECT_EQ(page->timeText(), "75:00");
}

TEST_F(FocusPage, MovingALengthDuringABlockMovesTheRingAndNotTheTime) {
  startViews();
  make();
  page->primaryAction();
  box->advanceSeconds(10 * 60);
  EXPECT_DOUBLE_EQ(page->progress(), 0.4);
  page->setFocusLength(50.0 / 60.0);
  EXPECT_EQ(page->timeText(), "15:00");
  EXPECT_DOUBLE_EQ(page->progress(), 0.7);
}

TEST_F(FocusPage, CountdownTicksOnceASecondAndOnlyWhileABlockRuns) {
  startViews();
  make();
  QSignalSpy spy(page.get(), &FocusCanvasPresenter::timeChanged);
  box->advanceSeconds(5);
  EXPECT_EQ(spy.count(), 0);
  page->primaryAction();
  spy.clear();
  box->advanceSeconds(3.5);
  EXPECT_EQ(spy.count(), 3);
  page->cancel();
  spy.clear();
  box->advanceSeconds(5);
  EXPECT_EQ(spy.count(), 0);
}

TEST_F(FocusPage, PageThatIsOpenedDuringABlockTicksToo) {
  startViews();
  state().startPomodoroFocus();
  make();
  QSignalSpy spy(page.get(), &FocusCanvasPresenter::timeChanged);
  box->advanceSeconds(2.5);
  EXPECT_EQ(spy.count(), 2);
}

TEST_F(FocusPage, LengthsAreCutToMinutesAndHeldInTheirRanges) {
  startViews();
  make();
  EXPECT_DOUBLE_EQ(page->focusLength(), 25.0 / 60.0);
  EXPECT_DOUBLE_EQ(page->breakLength(), 5.0 / 30.0);
  page->setFocusLength(0.5);
  EXPECT_EQ(page->focusLengthText(), "30 min");
  page->setFocusLength(0.0);
  EXPECT_EQ(page->focusLengthText(), "5 min");
  page->setFocusLength(1.0);
  EXPECT_EQ(page->focusLengthText(), "60 min");
  page->setBreakLength(0.349);
  EXPECT_EQ(page->breakLengthText(), "10 min");
  page->setBreakLength(0.0);
  EXPECT_EQ(page->breakLengthText(), "1 min");
  page->setBreakLength(1.0);
  EXPECT_EQ(page->breakLengthText(), "30 min");
}

TEST_F(FocusPage, PositionOfEveryMinuteIsThatMinuteAndAStepTheNext) {
  startViews();
  make();
  for (int minutes = 5; minutes < 60; ++minutes) {
    page->setFocusLength(minutes / 60.0);
    ASSERT_EQ(*state().pomodoroFocusMinutes(), minutes);
    page->setFocusLength(page->focusLength() + FocusCanvasPresenter::focusStep());
    ASSERT_EQ(*state().pomodoroFocusMinutes(), minutes + 1);
    page->setFocusLength(page->focusLength() - FocusCanvasPresenter::focusStep());
    ASSERT_EQ(*state().pomodoroFocusMinutes(), minutes);
  }
  for (int minutes = 1; minutes < 30; ++minutes) {
    page->setBreakLength(minutes / 30.0);
    ASSERT_EQ(*state().pomodoroBreakMinutes(), minutes);
    page->setBreakLength(page->breakLength() + FocusCanvasPresenter::breakStep());
    ASSERT_EQ(*state().pomodoroBreakMinutes(), minutes + 1);
    page->setBreakLength(page->breakLength() - FocusCanvasPresenter::breakStep());
    ASSERT_EQ(*state().pomodoroBreakMinutes(), minutes);
  }
}

TEST_F(FocusPage, CandidateWithoutAnIdentifierHasNoCell) {
  startViews();
  make();
  state().setFocusCandidateBundleIDs({"", "org.example.rain", "org.example.sea"});
  EXPECT_EQ(cells(), QStringList({"* None", "Rain-", "Sea-"}));
}

TEST_F(FocusPage, WithoutApplicationsThereIsTheCellOfNobody) {
  startViews();
  make();
  EXPECT_EQ(cells(), QStringList({"* None"}));
  EXPECT_TRUE(cell(0, FocusCellModel::IsNobodyRole).toBool());
  EXPECT_EQ(cell(0, FocusCellModel::TipRole), "Selected — click to clear");
}

TEST_F(FocusPage, CellsAreSortedByNameIgnoringCaseBehindNobody) {
  startWithSounding({});
  make();
  desktop.workspace.install("app.whitenoise", "aardvark noise", "/apps/noise");
  state().setFocusCandidateBundleIDs({spotify, "app.whitenoise"});
  EXPECT_EQ(cells(), QStringList({"* None", "aardvark noise-", "Editor", "Spotify-", "Zoom"}));
}

TEST_F(FocusPage, TappingChoosesAndTappingAgainClears) {
  startWithSounding({});
  make();
  page->cells()->tap(2);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), spotify);
  EXPECT_EQ(cells(), QStringList({"None", "Editor", "* Spotify", "Zoom"}));
  EXPECT_EQ(cell(2, FocusCellModel::TipRole), "Selected — click to clear");
  EXPECT_EQ(cell(1, FocusCellModel::TipRole), "Keep Editor playing during focus");
  page->cells()->tap(2);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), std::nullopt);
}

TEST_F(FocusPage, NobodyClearsTheChoice) {
  startWithSounding({});
  make();
  page->cells()->tap(1);
  page->cells()->tap(0);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), std::nullopt);
  page->cells()->tap(0);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), std::nullopt);
}

TEST_F(FocusPage, CandidateThatIsListedTooAppearsOnceAndStaysWhenItIsRemoved) {
  startWithSounding({});
  make();
  state().setFocusCandidateBundleIDs({spotify});
  EXPECT_EQ(cells(), QStringList({"* None", "Editor", "Spotify-", "Zoom"}));
  page->cells()->remove(2);
  EXPECT_EQ(cells(), QStringList({"* None", "Editor", "Spotify", "Zoom"}));
  EXPECT_TRUE(state().focusCandidateBundleIDs()->empty());
}

TEST_F(FocusPage, RemovingTheChosenCandidateClearsTheChoice) {
  startViews();
  make();
  state().setFocusCandidateBundleIDs({"org.example.rain"});
  page->cells()->tap(1);
  EXPECT_EQ(cells(), QStringList({"None", "* Rain-"}));
  page->cells()->remove(1);
  EXPECT_EQ(cells(), QStringList({"* None"}));
}

TEST_F(FocusPage, RemovingAnotherCandidateLeavesTheChoice) {
  startViews();
  make();
  state().setFocusCandidateBundleIDs({"org.example.rain", "org.example.sea"});
  page->cells()->tap(1);
  page->cells()->remove(2);
  EXPECT_EQ(cells(), QStringList({"None", "* Rain-"}));
}

TEST_F(FocusPage, NobodyCannotBeRemoved) {
  startViews();
  make();
  page->cells()->remove(0);
  EXPECT_EQ(cells(), QStringList({"* None"}));
}

TEST_F(FocusPage, PickedApplicationBecomesACandidateAndTheChosenOne) {
  startWithSounding({});
  desktop.workspace.install("org.example.rain", "Rain", "/apps/rain");
  make();
  page->addApp();
  settle();
  auto& apps = *page->picker()->apps();
  ASSERT_EQ(apps.count(), 4);
  EXPECT_EQ(apps.at(3).bundleID, "org.example.rain");
  // Whoever has a cell is there already.
  EXPECT_TRUE(apps.isAdded(0));
  EXPECT_FALSE(apps.isAdded(3));
  page->picker()->pick(3);
  EXPECT_EQ(*state().pomodoroFocusBundleID(), "org.example.rain");
  EXPECT_EQ(disk.text("quillmere.focusCandidates"), R"(["org.example.rain"])");
  EXPECT_EQ(cells(), QStringList({"None", "Editor", "* Rain-", "Spotify", "Zoom"}));
}

TEST_F(FocusPage, CellsKeepTheirIdentityWhenOthersComeAndGo) {
  startWithSounding({});
  make();
  QSignalSpy resets(page->cells(), &QAbstractItemModel::modelReset);
  QSignalSpy removals(page->cells(), &QAbstractItemModel::rowsRemoved);
  state().setFocusCandidateBundleIDs({"org.example.rain"});
  EXPECT_EQ(resets.count() + removals.count(), 0);
  state().setGain(0.2F, spotify);
  EXPECT_EQ(resets.count() + removals.count(), 0);
}

}  // namespace
}  // namespace quillmere
