// The lists of open tabs: their order, their texts, their letters, their limit.
#include "views/tabs/TabListModel.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace quillmere {
namespace {

BrowserTab tab(const std::string& id, const std::string& title, bool isActive = false) {
  BrowserTab result;
  result.id = id;
  result.title = title;
  result.urlString = "https://example.org";
  result.isActive = isActive;
  return result;
}

std::vector<BrowserTab> manyTabs(int count) {
  std::vector<BrowserTab> tabs;
  for (int i = 0; i < count; ++i) tabs.push_back(tab(std::to_string(i), "Tab " + std::to_string(i)));
  return tabs;
}

std::vector<std::string> titles(const TabListModel& model) {
  std::vector<std::string> result;
  for (const auto& each : model.rows()) result.push_back(each.title);
  return result;
}

class Tabs : public testing::Test {
 protected:
  TabListModel full{TabListModel::noLimit, [this](const BrowserTab& tab) { activated.push_back(tab.id); }};
  TabListModel compact{TabListModel::compactLimit, [this](const BrowserTab& tab) { activated.push_back(tab.id); }};
  std::vector<std::string> activated;
};

TEST_F(Tabs, ActiveOnesComeFirstAndThenTheTitleDecides) {
  full.setTabs({tab("1", "beta"), tab("2", "Zulu", true), tab("3", "Alpha"), tab("4", "mike", true)});
  EXPECT_EQ(titles(full), (std::vector<std::string>{"mike", "Zulu", "Alpha", "beta"}));
}

TEST_F(Tabs, EqualTitlesKeepTheOrderOfThePoll) {
  full.setTabs({tab("1", "Same"), tab("2", "same"), tab("3", "SAME")});
  EXPECT_EQ(titles(full), (std::vector<std::string>{"Same", "same", "SAME"}));
}

TEST_F(Tabs, OneTabIsSingular) {
  full.setTabs(manyTabs(1));
  EXPECT_EQ(full.countText(), "1 tab");
  EXPECT_EQ(full.openText(), "1 tab open");
}

TEST_F(Tabs, SeveralTabsArePlural) {
  full.setTabs(manyTabs(3));
  EXPECT_EQ(full.countText(), "3 tabs");
  EXPECT_EQ(full.openText(), "3 tabs open");
}

TEST_F(Tabs, NoTabsArePluralToo) {
  EXPECT_EQ(full.countText(), "0 tabs");
  EXPECT_EQ(full.openText(), "0 tabs open");
  EXPECT_TRUE(full.isEmpty());
}

TEST_F(Tabs, NineTabsAreEightRowsAndALineForOneMore) {
  compact.setTabs(manyTabs(9));
  EXPECT_EQ(compact.count(), 8);
  EXPECT_EQ(compact.moreText(), "+ 1 more");
  EXPECT_EQ(compact.countText(), "9 tabs");
}

TEST_F(Tabs, EightTabsHaveNoSuchLine) {
  compact.setTabs(manyTabs(8));
  EXPECT_EQ(compact.count(), 8);
  EXPECT_EQ(compact.moreText(), "");
}

TEST_F(Tabs, MainWindowShowsAllOfThem) {
  full.setTabs(manyTabs(200));
  EXPECT_EQ(full.count(), 200);
  EXPECT_EQ(full.moreText(), "");
}

TEST_F(Tabs, ClickBringsTheRowsTabToTheFront) {
  full.setTabs({tab("1", "beta"), tab("2", "alpha")});
  full.activate(0);
  EXPECT_EQ(activated, std::vector<std::string>{"2"});
}

TEST_F(Tabs, ClickOnARowThatIsGoneDoesNothing) {
  full.activate(0);
  full.activate(-1);
  EXPECT_TRUE(activated.empty());
}

TEST_F(Tabs, PollWithTheSameTabsTellsNothing) {
  full.setTabs(manyTabs(5));
  QSignalSpy data(&full, &TabListModel::dataChanged);
  QSignalSpy inserted(&full, &TabListModel::rowsInserted);
  QSignalSpy texts(&full, &TabListModel::tabsChanged);
  full.setTabs(manyTabs(5));
  EXPECT_EQ(data.count() + inserted.count() + texts.count(), 0);
}

TEST_F(Tabs, TabThatChangesItsTitleIsTheSameRow) {
  full.setTabs({tab("1", "a"), tab("2", "b")});
  QSignalSpy removed(&full, &TabListModel::rowsRemoved);
  QSignalSpy data(&full, &TabListModel::dataChanged);
  full.setTabs({tab("1", "aa"), tab("2", "b")});
  EXPECT_EQ(removed.count(), 0);
  EXPECT_EQ(data.count(), 1);
}

TEST_F(Tabs, AnIdThatComesTwiceIsOneRowWithTheFirstOfThem) {
  full.setTabs({tab("1", "b"), tab("2", "c"), tab("1", "a"), tab("3", "d")});
  EXPECT_EQ(titles(full), (std::vector<std::string>{"a", "c", "d"}));
  full.setTabs({tab("1", "b"), tab("2", "c"), tab("3", "d")});
  EXPECT_EQ(titles(full), (std::vector<std::string>{"b", "c", "d"}));
}

TEST_F(Tabs, WhatARowShowsGoesWithItsTab) {
  const auto shown = [this] {
    QStringList result;
    for (int row = 0; row < full.count(); ++row) {
      result.append(full.data(full.index(row), TabListModel::TitleRole).toString() + " " +
                    full.data(full.index(row), TabListModel::LetterRole).toString());
    }
    return result;
  };
  auto ford = tab("1", "ford");
  ford.urlString = "https://f.example";
  auto golf = tab("2", "golf");
  golf.urlString = "https://g.example";
  full.setTabs({ford, golf});
  EXPECT_EQ(shown(), QStringList({"ford F", "golf G"}));
  golf.title = "a golf";
  full.setTabs({tab("3", "mike"), ford, golf});
  EXPECT_EQ(shown(), QStringList({"a golf G", "ford F", "mike E"}));
  full.setTabs({ford});
  EXPECT_EQ(shown(), QStringList({"ford F"}));
}

TEST_F(Tabs, ATabThatGoesToAnotherPlaceUnderItsTitleChangesItsLetter) {
  auto moving = tab("1", "title");
  full.setTabs({moving});
  ASSERT_EQ(full.data(full.index(0), TabListModel::LetterRole).toString(), "E");
  moving.urlString = "https://qt.io";
  full.setTabs({moving});
  EXPECT_EQ(full.data(full.index(0), TabListModel::LetterRole).toString(), "Q");
  moving.urlString = "";
  full.setTabs({moving});
  EXPECT_EQ(full.data(full.index(0), TabListModel::LetterRole).toString(), "?");
}

TEST_F(Tabs, ATitleIsShownOnOneLineWithoutControlCharactersAndStaysAsItIsInTheTab) {
  const std::string unclean = "first\nsecond\tthird\x1B[31m\u0085\u2028fourth\u009B";
  full.setTabs({tab("1", unclean)});
  EXPECT_EQ(full.data(full.index(0), TabListModel::TitleRole).toString(), "first second third [31m fourth ");
  EXPECT_EQ(full.rows().front().title, unclean);
}

TEST_F(Tabs, AnEndlessTitleIsShownByItsBeginningAndItsEnd) {
  full.setTabs({tab("1", "beginning " + std::string(100000, 'x') + " end")});
  const auto shown = full.data(full.index(0), TabListModel::TitleRole).toString();
  EXPECT_LE(shown.size(), 1024);
  EXPECT_TRUE(shown.startsWith("beginning xx"));
  EXPECT_TRUE(shown.endsWith("xx end"));
  EXPECT_TRUE(shown.contains(u'…'));
}

TEST_F(Tabs, MarkupIsShownAsItIsWritten) {
  full.setTabs({tab("1", "<b>bold</b> &amp; <img src='file:///etc/passwd'>")});
  EXPECT_EQ(full.data(full.index(0), TabListModel::TitleRole).toString(),
            "<b>bold</b> &amp; <img src='file:///etc/passwd'>");
}

TEST_F(Tabs, ATitleFromRightToLeftIsShownInItsOrder) {
  full.setTabs({tab("1", "שלום – Example")});
  EXPECT_EQ(full.data(full.index(0), TabListModel::TitleRole).toString(), QStringLiteral("שלום – Example"));
}

TEST_F(Tabs, BytesThatAreNoUtf8AreShownAsReplacements) {
  full.setTabs({tab("1",
                    "a\xFF"
                    "b")});
  EXPECT_EQ(full.data(full.index(0), TabListModel::TitleRole).toString(), QStringLiteral("a\uFFFDb"));
}

TEST(TabLetter, OfAnEndlessAddressIsTheFirstOfTheHost) {
  const std::string start = "https://www.example.org/";
  EXPECT_EQ(tabLetter(start + std::string(1000000, 'x')), "E");
  // However the address is cut, no escaped character is halved.
  for (int shift = 0; shift < 6; ++shift) {
    std::string escaped = start + std::string(static_cast<std::size_t>(shift), 'x');
    while (escaped.size() < 5000) escaped += "%C3%A9";
    EXPECT_EQ(tabLetter(escaped), "E") << shift;
  }
}

TEST(TabLetter, OfAnEndlessDataAddressIsAQuestionMark) {
  EXPECT_EQ(tabLetter("data:text/html;base64," + std::string(1000000, 'A')), "?");
}

TEST(TabLetter, IsTheFirstOfTheHost) { EXPECT_EQ(tabLetter("https://example.org/page"), "E"); }

TEST(TabLetter, LeavesOutWww) { EXPECT_EQ(tabLetter("https://www.youtube.com"), "Y"); }

TEST(TabLetter, LeavesOutWwwInAnyCase) { EXPECT_EQ(tabLetter("https://WWW.Example.org"), "E"); }

TEST(TabLetter, OfAnAddressWithoutHostIsAQuestionMark) {
  EXPECT_EQ(tabLetter("about:blank"), "?");
  EXPECT_EQ(tabLetter(""), "?");
  EXPECT_EQ(tabLetter("file:///home/ann/notes.html"), "?");
}

TEST(TabLetter, ReadsWhatBrowsersLeaveUnencodedBehindTheHost) {
  for (const auto* tail : {"?q=a|b", "?json={\"a\":[1]}", "/wiki/C^2", "?path=C:\\x", "#`code`", "?a='b'<c>"}) {
    EXPECT_EQ(tabLetter(std::string("https://www.example.org") + tail), "E") << tail;
  }
  EXPECT_EQ(tabLetter("https://example.org?q=a|b"), "E");
  EXPECT_EQ(tabLetter("http://user|name@example.org/"), "?");
}

TEST(TabLetter, OfWhatIsNoAddressIsAQuestionMark) {
  EXPECT_EQ(tabLetter("http://[broken"), "?");
  EXPECT_EQ(tabLetter("not an address at all"), "?");
}

TEST(TabLetter, OfAHostThatIsNothingButWwwIsAQuestionMark) { EXPECT_EQ(tabLetter("https://www./"), "?"); }

}  // namespace
}  // namespace quillmere
