// What the page of the activity shows, without a window.
#include "views/activity/ActivityCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"

namespace quillmere {
namespace {

class ActivityPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<ActivityCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  void launchMany(int count) const {
    for (int i = 0; i < count; ++i) box->launch("org.example.app" + std::to_string(i), "App " + std::to_string(i));
  }
  [[nodiscard]] QStringList rows(ActivityRowModel::Role role) const {
    QStringList result;
    for (int row = 0; row < page->rows()->count(); ++row) {
      result.append(page->rows()->data(page->rows()->index(row), role).toString());
    }
    return result;
  }

  std::unique_ptr<ActivityCanvasPresenter> page;
};

TEST_F(ActivityPage, EmptyMachineHasEmptyRings) {
  startViews();
  make();
  EXPECT_EQ(page->liveValue(), "0");
  EXPECT_EQ(page->liveProgress(), 0.0);
  EXPECT_EQ(page->appsValue(), "0");
  EXPECT_EQ(page->appsProgress(), 0.0);
  EXPECT_FALSE(page->anyApps());
}

TEST_F(ActivityPage, LiveRingIsTheShareOfTheApplications) {
  launchMany(3);
  box->launch(spotify, "Spotify");
  box->setSounding(spotify, true);
  startViews();
  make();
  EXPECT_EQ(page->liveValue(), "1");
  EXPECT_DOUBLE_EQ(page->liveProgress(), 0.25);
  EXPECT_EQ(page->appsValue(), "4");
  EXPECT_DOUBLE_EQ(page->appsProgress(), 0.5);
}

TEST_F(ActivityPage, EightApplicationsOrMoreFillTheirRing) {
  launchMany(8);
  startViews();
  make();
  EXPECT_DOUBLE_EQ(page->appsProgress(), 1.0);
  box->launch(spotify, "Spotify");
  box->detect();
  box->advanceSeconds(2);
  EXPECT_EQ(page->appsValue(), "9");
  EXPECT_DOUBLE_EQ(page->appsProgress(), 1.0);
}

TEST_F(ActivityPage, FiveProfilesOrMoreFillTheirRing) {
  startViews();
  make();
  EXPECT_EQ(page->profilesValue(), "1");
  EXPECT_DOUBLE_EQ(page->profilesProgress(), 0.2);
  for (int i = 0; i < 4; ++i) state().addProfile("Another");
  EXPECT_DOUBLE_EQ(page->profilesProgress(), 1.0);
  state().addProfile("A sixth");
  EXPECT_EQ(page->profilesValue(), "6");
  EXPECT_DOUBLE_EQ(page->profilesProgress(), 1.0);
}

TEST_F(ActivityPage, TriggersAreMeasuredByANewRulesAndMayBeMore) {
  startViews();
  make();
  EXPECT_EQ(page->triggersValue(), "8");
  EXPECT_DOUBLE_EQ(page->triggersProgress(), 1.0);
  auto rule = *state().duckRule();
  rule.triggerBundleIDs.insert({"a", "b", "c", "d"});
  state().setDuckRule(rule);
  EXPECT_EQ(page->triggersValue(), "12");
  EXPECT_DOUBLE_EQ(page->triggersProgress(), 1.5);
  rule.triggerBundleIDs.clear();
  state().setDuckRule(rule);
  EXPECT_DOUBLE_EQ(page->triggersProgress(), 0.0);
}

TEST_F(ActivityPage, RowsAreTheApplicationsInTheirOrder) {
  startWithSounding({spotify});
  make();
  QStringList names;
  QStringList live;
  for (const auto& app : *state().apps()) {
    names.append(QString::fromStdString(app.name));
    live.append(app.bundleID == spotify ? "true" : "false");
  }
  EXPECT_EQ(rows(ActivityRowModel::NameRole), names);
  EXPECT_EQ(rows(ActivityRowModel::LiveRole), live);
}

TEST_F(ActivityPage, OneThatFallsSilentIsTheOnlyRowTold) {
  startWithSounding({spotify, editor});
  make();
  QSignalSpy told(page->rows(), &ActivityRowModel::dataChanged);
  QSignalSpy inserted(page->rows(), &ActivityRowModel::rowsInserted);
  QSignalSpy removed(page->rows(), &ActivityRowModel::rowsRemoved);
  for (int i = 0; i < 10; ++i) box->detect();
  EXPECT_EQ(told.count(), 0);
  sound(editor, false);
  EXPECT_EQ(told.count(), 1);
  EXPECT_EQ(inserted.count() + removed.count(), 0);
}

}  // namespace
}  // namespace quillmere
