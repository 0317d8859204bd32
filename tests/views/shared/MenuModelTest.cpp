// Menus as data: what changes is told as little as will do.
#include "views/shared/MenuModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace quillmere {
namespace {

std::vector<MenuEntry> entries(const QStringList& titles, const QString& checked = {}) {
  std::vector<MenuEntry> result;
  for (const auto& title : titles) {
    result.push_back(title == "-" ? MenuEntry::divider() : MenuEntry{title, title == checked, false, {}});
  }
  return result;
}

class Menu : public testing::Test {
 protected:
  MenuModel menu;
  QAbstractItemModelTester tester{&menu, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(Menu, NewEntryInTheMiddleIsOneInsertion) {
  menu.setEntries(entries({"a", "-", "z"}));
  QSignalSpy inserted(&menu, &MenuModel::rowsInserted);
  QSignalSpy removed(&menu, &MenuModel::rowsRemoved);
  menu.setEntries(entries({"a", "b", "-", "z"}));
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(removed.count(), 0);
  EXPECT_EQ(menu.data(menu.index(1), MenuModel::TitleRole), "b");
}

TEST_F(Menu, EqualTitlesSideBySideAreEntriesOfTheirOwn) {
  menu.setEntries(entries({"a", "a"}));
  EXPECT_EQ(menu.rowCount(), 2);
  QSignalSpy inserted(&menu, &MenuModel::rowsInserted);
  menu.setEntries(entries({"a", "a", "a"}));
  EXPECT_EQ(menu.rowCount(), 3);
  EXPECT_EQ(inserted.count(), 1);
  menu.setEntries(entries({"a"}));
  EXPECT_EQ(menu.rowCount(), 1);
}

TEST_F(Menu, MarkThatMovesChangesNoRows) {
  menu.setEntries(entries({"a", "b"}, "a"));
  QSignalSpy inserted(&menu, &MenuModel::rowsInserted);
  QSignalSpy data(&menu, &MenuModel::dataChanged);
  menu.setEntries(entries({"a", "b"}, "b"));
  EXPECT_EQ(inserted.count(), 0);
  EXPECT_EQ(data.count(), 2);
}

TEST_F(Menu, SameEntriesTellNothingButDoTheNewThing) {
  int chosen = 0;
  menu.setEntries({{"a", false, false, [&] { chosen = 1; }}});
  QSignalSpy data(&menu, &MenuModel::dataChanged);
  menu.setEntries({{"a", false, false, [&] { chosen = 2; }}});
  menu.trigger(0);
  EXPECT_EQ(data.count(), 0);
  EXPECT_EQ(chosen, 2);
}

TEST_F(Menu, TellsWhetherAnythingIsChecked) {
  QSignalSpy told(&menu, &MenuModel::anyCheckedChanged);
  menu.setEntries(entries({"a", "b"}));
  EXPECT_FALSE(menu.anyChecked());
  menu.setEntries(entries({"a", "b"}, "b"));
  EXPECT_TRUE(menu.anyChecked());
  menu.setEntries(entries({"a", "b"}, "a"));
  EXPECT_TRUE(menu.anyChecked());
  EXPECT_EQ(told.count(), 1);
  menu.setEntries({});
  EXPECT_FALSE(menu.anyChecked());
  EXPECT_EQ(told.count(), 2);
}

TEST_F(Menu, DividersAndMissingRowsDoNothing) {
  int chosen = 0;
  const auto choose = [&chosen] { ++chosen; };
  menu.setEntries({{"a", false, false, choose}, {{}, false, true, choose}});
  menu.trigger(1);
  menu.trigger(2);
  menu.trigger(-1);
  EXPECT_EQ(chosen, 0);
  menu.trigger(0);
  EXPECT_EQ(chosen, 1);
}

TEST_F(Menu, EntryMayReplaceTheMenuThatItStandsIn) {
  menu.setEntries({{"a", false, false, [this] { menu.setEntries({}); }}});
  menu.trigger(0);
  EXPECT_EQ(menu.rowCount(), 0);
}

}  // namespace
}  // namespace quillmere
