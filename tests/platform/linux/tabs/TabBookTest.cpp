// What a companion tells, and what is made of it.
#include "platform/linux/tabs/TabBook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace quillmere::tabs {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Json = nlohmann::json;

class Book : public ::testing::Test {
 protected:
  /// What was wrong with it; empty where nothing was.
  std::string tell(const std::string& message) {
    std::string problem;
    auto news = readTabNews(message, problem);
    return news ? book.take(std::move(*news)).value_or("") : problem;
  }
  [[nodiscard]] std::string titleOf(TabID id) const {
    const auto* tab = book.tab(id);
    return tab != nullptr ? tab->title : "(none)";
  }

  TabBook book;
};

TEST_F(Book, WindowsAndTabsKeepTheBrowsersOrder) {
  ASSERT_EQ(tell(R"({"tabs":[[7,0,"Seven","https://7"],[3,1,"Three","https://3"]],"windows":[[20,[7,3]],[10,[]]]})"),
            "");
  ASSERT_EQ(book.windows().size(), 2U);
  EXPECT_EQ(book.windows()[0].id, 20);
  EXPECT_THAT(book.windows()[0].tabs, ElementsAre(7, 3));
  EXPECT_TRUE(book.windows()[1].tabs.empty());
  EXPECT_FALSE(book.tab(7)->isActive);
  EXPECT_TRUE(book.tab(3)->isActive);
  EXPECT_EQ(book.tab(3)->url, "https://3");
}

TEST_F(Book, ATabThatIsToldAnewTakesThePlaceOfWhatItWas) {
  ASSERT_EQ(tell(R"({"tabs":[[1,0,"Old","u"],[2,0,"Other","u"]],"windows":[[1,[1,2]]]})"), "");
  ASSERT_EQ(tell(R"({"tabs":[[1,1,"New","v"]]})"), "");
  EXPECT_EQ(titleOf(1), "New");
  EXPECT_EQ(titleOf(2), "Other");
  EXPECT_THAT(book.windows()[0].tabs, ElementsAre(1, 2));
}

TEST_F(Book, ATabOfNoWindowIsForgotten) {
  ASSERT_EQ(tell(R"({"tabs":[[1,0,"One","u"],[2,0,"Two","u"]],"windows":[[1,[1,2]]]})"), "");
  ASSERT_EQ(tell(R"({"windows":[[1,[2]]]})"), "");
  EXPECT_EQ(book.tab(1), nullptr);
  EXPECT_EQ(titleOf(2), "Two");
  EXPECT_EQ(book.textBytes(), 4U);
}

TEST_F(Book, WhatDividesFieldsAndRecordsIsABlankInATitleAndInAnAddress) {
  ASSERT_EQ(tell(R"({"tabs":[[1,0,"a\tb\nc\r\u0000d","x\ty\nz"]],"windows":[[1,[1]]]})"), "");
  EXPECT_EQ(titleOf(1), "a b c  d");
  EXPECT_EQ(book.tab(1)->url, "x y z");
}

TEST_F(Book, NothingElseOfATitleChanges) {
  const std::string title = "<b>שלום</b> 👩‍👩‍👧 & \"quotes\" \xC2\xA0 é";
  ASSERT_EQ(tell(Json{{"tabs", {{1, 0, title, ""}}}, {"windows", Json::array({{1, {1}}})}}.dump()), "");
  EXPECT_EQ(titleOf(1), title);
}

TEST_F(Book, EndsOfLinesAndControlsOfEveryKindAreBlanks) {
  EXPECT_EQ(withoutControls("a\x7F"
                            "b\xC2\x85"
                            "c\xE2\x80\xA8"
                            "d\xE2\x80\xA9"
                            "e\x1B[31m"),
            "a b c d e [31m");
  EXPECT_EQ(withoutControls("\xC2\xA0\xE2\x80\xA6"), "\xC2\xA0\xE2\x80\xA6");
  EXPECT_EQ(withoutControls("\xC2"), "\xC2");
}

TEST_F(Book, ALongTitleIsCutBetweenCharacters) {
  std::string title = "x";
  while (title.size() < 100'000) title += "é";
  ASSERT_EQ(tell(Json{{"tabs", {{1, 0, title, title}}}}.dump()), "");
  EXPECT_EQ(titleOf(1).size(), longestTitle - 1);
  EXPECT_EQ(titleOf(1), title.substr(0, longestTitle - 1));
  EXPECT_EQ(book.tab(1)->url.size(), longestUrl - 1);
}

TEST_F(Book, WhatItDoesNotKnowDoesNotCount) {
  ASSERT_EQ(tell(R"({"colour":"red","windows":[[1,[5]]]})"), "");
  EXPECT_EQ(book.windows().size(), 1U);
  EXPECT_EQ(tell("{}"), "");
  EXPECT_EQ(book.windows().size(), 1U);
}

TEST_F(Book, WhatIsNoNewsIsRefusedAndChangesNothing) {
  ASSERT_EQ(tell(R"({"tabs":[[1,0,"One","u"]],"windows":[[1,[1]]]})"), "");
  for (const auto* bad :
       {"", "x", "[]", "null", "{", R"({"tabs":1})", R"({"tabs":[[1,0,"a"]]})", R"({"tabs":[["1",0,"a","b"]]})",
        R"({"tabs":[[1,0,"a",null]]})", R"({"tabs":[[1,true,"a","b"]]})", R"({"windows":{}})", R"({"windows":[[1]]})",
        R"({"windows":[[1,["x"]]]})", R"({"tabs":[[1,0,"New","u"]],"windows":[[1,[1.5]]]})",
        "{\"tabs\":[[1,0,\"\xFF\",\"\"]]}", R"({"tabs":[[1,0,"\ud800",""]]})"}) {
    EXPECT_NE(tell(bad), "") << bad;
    EXPECT_EQ(titleOf(1), "One") << bad;
    EXPECT_EQ(book.windows().size(), 1U) << bad;
  }
}

TEST_F(Book, NoMoreWindowsAndTabsAreKeptThanAnybodyHas) {
  Json tabs = Json::array();
  for (std::size_t id = 0; id <= TabBook::mostTabs; ++id) tabs.push_back(id);
  EXPECT_THAT(tell(Json{{"windows", {{1, tabs}}}}.dump()), HasSubstr("too many"));
  Json windows = Json::array();
  for (std::size_t id = 0; id <= TabBook::mostWindows; ++id) windows.push_back({id, Json::array()});
  EXPECT_THAT(tell(Json{{"windows", windows}}.dump()), HasSubstr("too many"));
  EXPECT_TRUE(book.windows().empty());
}

TEST_F(Book, ATabStandsInOnePlaceSoThatItsTextIsAnsweredOnce) {
  ASSERT_EQ(tell(R"({"tabs":[[1,0,"One","u"],[2,0,"Two","u"]],"windows":[[1,[1]],[2,[2]]]})"), "");
  EXPECT_THAT(tell(R"({"windows":[[1,[1,2,1]]]})"), HasSubstr("in two places"));
  EXPECT_THAT(tell(R"({"windows":[[1,[1]],[2,[2,1]]]})"), HasSubstr("in two places"));
  ASSERT_EQ(book.windows().size(), 2U);
  EXPECT_THAT(book.windows()[0].tabs, ElementsAre(1));
  EXPECT_EQ(tell(R"({"windows":[[1,[]],[2,[2,1]]]})"), "");
}

TEST_F(Book, TabsWithoutWindowsDoNotPileUp) {
  const std::string title(longestTitle, 'x');
  std::string problem;
  for (std::size_t id = 0; problem.empty() && id < 10'000; ++id)
    problem = tell(Json{{"tabs", {{id, 0, title, ""}}}}.dump());
  EXPECT_THAT(problem, HasSubstr("too much"));
  EXPECT_LE(book.textBytes(), TabBook::mostText);
}

}  // namespace
}  // namespace quillmere::tabs
