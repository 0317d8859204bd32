// What the page of Auto-Duck shows.
#include "views/autoduck/AutoDuckCanvasPresenter.h"

#include <QSignalSpy>

#include "../ViewsFixture.h"
#include "core/Json.h"

namespace quillmere {
namespace {

class AutoDuckPage : public ViewsFixture {
 protected:
  void make() { page = std::make_unique<AutoDuckCanvasPresenter>(services()); }
  void TearDown() override { page.reset(); }
  void setRule(const std::function<void(DuckRule&)>& change) {
    auto rule = *state().duckRule();
    change(rule);
    state().setDuckRule(rule);
  }
  /// Names, with "off " before those that are switched off and "|" before the first of these.
  static QStringList rows(const DuckListModel& list) {
    QStringList shown;
    for (int at = 0; at < list.count(); ++at) {
      const auto index = list.index(at);
      if (list.data(index, DuckListModel::StartsDefaultsRole).toBool()) shown.append("|");
      shown.append((list.data(index, DuckListModel::OnRole).toBool() ? "" : "off ") +
                   list.data(index, DuckListModel::NameRole).toString());
    }
    return shown;
  }
  static int rowOf(const DuckListModel& list, const std::string& bundleID) {
    return static_cast<int>(std::ranges::find(list.keys(), bundleID) - list.keys().begin());
  }

  std::unique_ptr<AutoDuckCanvasPresenter> page;
};

TEST_F(AutoDuckPage, TargetIsCutNotRounded) {
  startViews();
  make();
  page->setTarget(0.305);
  EXPECT_EQ(page->targetText(), "30%");
  EXPECT_FLOAT_EQ(state().duckRule()->targetGain, 0.305F);
  EXPECT_NEAR(page->target(), 0.305, 1e-6);
}

TEST_F(AutoDuckPage, FadeRunsFromFiftyToAThousandMilliseconds) {
  startViews();
  make();
  EXPECT_EQ(page->fadeText(), "300 ms");
  page->setFade(0.0);
  EXPECT_EQ(state().duckRule()->fadeMillis, 50);
  EXPECT_EQ(page->fade(), 0.0);
  page->setFade(1.0);
  EXPECT_EQ(page->fadeText(), "1000 ms");
  EXPECT_EQ(page->fade(), 1.0);
  page->setFade(0.3336);
  EXPECT_EQ(state().duckRule()->fadeMillis, 366);
}

TEST_F(AutoDuckPage, FadeBelowItsRangeIsShownAsItIsUntilItIsMoved) {
  startViews();
  setRule([](DuckRule& rule) { rule.fadeMillis = 12; });
  make();
  EXPECT_EQ(page->fadeText(), "12 ms");
  EXPECT_DOUBLE_EQ(page->fade(), -38.0 / 950.0);
  page->setTarget(0.5);
  EXPECT_EQ(state().duckRule()->fadeMillis, 12);
}

TEST_F(AutoDuckPage, DelayRunsFromNothingToFiveSeconds) {
  startViews();
  make();
  EXPECT_EQ(page->delayText(), "1500 ms");
  EXPECT_DOUBLE_EQ(page->delay(), 0.3);
  page->setDelay(0.0);
  EXPECT_EQ(page->delayText(), "0 ms");
  page->setDelay(0.9999);
  EXPECT_EQ(page->delayText(), "4999 ms");
  page->setDelay(1.0);
  EXPECT_EQ(page->delayText(), "5000 ms");
}

TEST_F(AutoDuckPage, EveryMoveIsStoredAtOnce) {
  startViews();
  make();
  page->setTarget(0.1);
  page->setTarget(0.2);
  page->setDelay(0.4);
  const auto stored = json::decodeDuckRule(disk.text("quillmere.duckRule"));
  ASSERT_TRUE(stored);
  EXPECT_FLOAT_EQ(stored->targetGain, 0.2F);
  EXPECT_EQ(stored->restoreDelayMillis, 2000);
  EXPECT_EQ(std::ranges::count(disk.written(), "quillmere.duckRule"), 3);
}

TEST_F(AutoDuckPage, MembersComeInTheOrderOfTheirIdentifiersAndDefaultsThatAreOffBelow) {
  startViews();
  const auto& defaults = DuckRule::defaultMeetingApps();
  ASSERT_GE(defaults.size(), 2U);
  setRule([&](DuckRule& rule) {
    rule.triggerBundleIDs = defaults;
    rule.triggerBundleIDs.insert("aaa.first");
    rule.triggerBundleIDs.insert("zzz.last");
    rule.triggerBundleIDs.erase(*defaults.begin());
  });
  make();
  std::vector<std::string> wanted{"aaa.first"};
  wanted.insert(wanted.end(), std::next(defaults.begin()), defaults.end());
  wanted.emplace_back("zzz.last");
  wanted.push_back(*defaults.begin());
  EXPECT_EQ(page->triggers()->keys(), wanted);
  const auto shown = rows(*page->triggers());
  EXPECT_EQ(shown.first(), "First");
  EXPECT_EQ(shown.at(shown.size() - 2), "|");
  EXPECT_TRUE(shown.last().startsWith("off "));
}

TEST_F(AutoDuckPage, EmptyListCountsZeroInThePluralAndKeepsItsDefaults) {
  startViews();
  setRule([](DuckRule& rule) { rule.duckedBundleIDs.clear(); });
  make();
  EXPECT_EQ(page->ducked()->countText(), "0 apps");
  EXPECT_EQ(page->ducked()->count(), static_cast<int>(DuckRule::defaultMusicApps().size()));
  EXPECT_EQ(rows(*page->ducked()).first(), "|");
}

TEST_F(AutoDuckPage, CountIsSingularForOneOnly) {
  startViews();
  setRule([](DuckRule& rule) { rule.triggerBundleIDs = {"org.example.one"}; });
  make();
  EXPECT_EQ(page->triggers()->countText(), "1 app");
  page->triggers()->add("org.example.two");
  EXPECT_EQ(page->triggers()->countText(), "2 apps");
}

TEST_F(AutoDuckPage, WithAllDefaultsOnThereIsNoHeadingForThem) {
  startViews();
  make();
  EXPECT_FALSE(rows(*page->triggers()).contains("|"));
}

TEST_F(AutoDuckPage, DefaultThatIsSwitchedOffMovesDownAndCanBeSwitchedOnAgain) {
  startViews();
  make();
  const auto first = *DuckRule::defaultMeetingApps().begin();
  QSignalSpy removals(page->triggers(), &QAbstractItemModel::rowsRemoved);
  page->triggers()->setOn(rowOf(*page->triggers(), first), false);
  EXPECT_FALSE(state().duckRule()->triggerBundleIDs.contains(first));
  EXPECT_EQ(rowOf(*page->triggers(), first), page->triggers()->count() - 1);
  page->triggers()->setOn(page->triggers()->count() - 1, true);
  EXPECT_EQ(state().duckRule()->triggerBundleIDs, DuckRule::defaultMeetingApps());
  EXPECT_EQ(rowOf(*page->triggers(), first), 0);
  // The row is the same all the way.
  EXPECT_EQ(removals.count(), 0);
}

TEST_F(AutoDuckPage, OtherApplicationThatIsSwitchedOffLeaves) {
  startViews();
  make();
  page->ducked()->add("org.example.player");
  const auto before = page->ducked()->count();
  page->ducked()->setOn(rowOf(*page->ducked(), "org.example.player"), false);
  EXPECT_EQ(page->ducked()->count(), before - 1);
  EXPECT_FALSE(state().duckRule()->duckedBundleIDs.contains("org.example.player"));
}

TEST_F(AutoDuckPage, RowThatIsNotThereSwitchesNothing) {
  startViews();
  make();
  const auto before = *state().duckRule();
  page->triggers()->setOn(-1, false);
  page->triggers()->setOn(page->triggers()->count(), true);
  EXPECT_EQ(*state().duckRule(), before);
}

TEST_F(AutoDuckPage, PickerIsToldWhatIsOnItsListAndAddsToIt) {
  startWithSounding({});
  make();
  page->addTrigger();
  settle();
  auto& picker = *page->picker();
  ASSERT_TRUE(picker.isOpen());
  const auto rowFor = [&](const std::string& bundleID) {
    for (int row = 0; row < picker.apps()->count(); ++row) {
      if (picker.apps()->at(row).bundleID == bundleID) return row;
    }
    return -1;
  };
  EXPECT_TRUE(picker.apps()->isAdded(rowFor(zoom)));
  EXPECT_FALSE(picker.apps()->isAdded(rowFor(spotify)));
  picker.pick(rowFor(editor));
  EXPECT_TRUE(state().duckRule()->triggerBundleIDs.contains(editor));
  EXPECT_FALSE(state().duckRule()->duckedBundleIDs.contains(editor));
  EXPECT_FALSE(picker.isOpen());
  page->addDucked();
  settle();
  EXPECT_TRUE(picker.apps()->isAdded(rowFor(spotify)));
  EXPECT_FALSE(picker.apps()->isAdded(rowFor(editor)));
}

TEST_F(AutoDuckPage, NamesFollowWhatTheDesktopKnows) {
  startViews();
  setRule([](DuckRule& rule) { rule.triggerBundleIDs = {"com.example.some-tool"}; });
  make();
  EXPECT_EQ(rows(*page->triggers()).first(), "Some Tool");
  desktop.workspace.install("com.example.some-tool", "The Tool", "/apps/tool");
  desktop.workspace.tellApplicationsChanged();
  EXPECT_EQ(rows(*page->triggers()).first(), "The Tool");
}

TEST_F(AutoDuckPage, MovingALevelAsksForNoNames) {
  startWithSounding({spotify});
  make();
  const auto before = desktop.workspace.listingCount();
  state().setGain(0.5F, spotify);
  EXPECT_EQ(desktop.workspace.listingCount(), before);
}

}  // namespace
}  // namespace quillmere
