// The scripts, the text they answer with, the polls.
#include "integrations/BrowserTabMonitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "BrowserScriptTexts.h"
#include "Browsers.h"
#include "platform/memory/MemoryTabScripting.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::SizeIs;

constexpr const char* brave = "com.brave.Browser";
constexpr const char* arc = "company.thebrowser.Browser";
constexpr const char* edge = "com.microsoft.edgemac";

// Scripts. ------------------------------------------------------------------------------------------------------------

TEST(BrowserScripts, AreThoseOfFiveBrowsersToTheByte) {
  const BrowserTabMonitor::Scripts expected{{chrome, scripttexts::chromeQuery},
                                            {brave, scripttexts::braveQuery},
                                            {arc, scripttexts::arcQuery},
                                            {edge, scripttexts::edgeQuery},
                                            {safari, scripttexts::safariQuery}};
  EXPECT_EQ(BrowserTabMonitor::scripts(), expected);
}

TEST(BrowserScripts, AreBuiltOnce) { EXPECT_EQ(&BrowserTabMonitor::scripts(), &BrowserTabMonitor::scripts()); }

TEST(BrowserScripts, SeparateFieldsByTabsAndLinesByLineFeedsAlone) {
  for (const auto& [bundleID, script] : BrowserTabMonitor::scripts()) {
    EXPECT_EQ(std::count(script.begin(), script.end(), '\t'), 4) << bundleID;
    EXPECT_EQ(script.find('\r'), std::string::npos) << bundleID;
    EXPECT_FALSE(script.ends_with('\n')) << bundleID;
  }
}

// The text. -----------------------------------------------------------------------------------------------------------

std::vector<BrowserTab> parsed(const std::string& text) { return BrowserTabMonitor::parse(text, safari); }

TEST(TabListText, ARecordIsATab) {
  EXPECT_THAT(parsed("1\t3\t1\tExample\thttps://example.org/\n"),
              ElementsAre(BrowserTab{"com.apple.Safari:w1:t3", safari, "Example", "https://example.org/", true}));
}

TEST(TabListText, NoTextIsNoTabs) { EXPECT_THAT(BrowserTabMonitor::parse(std::nullopt, safari), IsEmpty()); }

TEST(TabListText, AnEmptyTextIsNoTabs) { EXPECT_THAT(parsed(""), IsEmpty()); }

TEST(TabListText, EmptyLinesAreNothing) { EXPECT_THAT(parsed("\n\n1\t1\t0\tA\tu\n\n\n1\t2\t0\tB\tu\n\n"), SizeIs(2)); }

TEST(TabListText, TheLastRecordMayLackItsLineFeed) { EXPECT_THAT(parsed("1\t1\t0\tA\tu"), SizeIs(1)); }

TEST(TabListText, TabsAreInTheOrderOfTheLines) {
  std::vector<std::string> ids;
  for (const auto& tab : parsed("2\t1\t0\tB\tu\n1\t2\t0\tA\tu\n1\t1\t0\tC\tu\n")) ids.push_back(tab.id);
  EXPECT_THAT(ids, ElementsAre("com.apple.Safari:w2:t1", "com.apple.Safari:w1:t2", "com.apple.Safari:w1:t1"));
}

TEST(TabListText, BlankTabsAreKept) {
  const auto tabs = parsed("1\t1\t0\t\t\n1\t2\t1\t\tabout:blank\n");
  ASSERT_THAT(tabs, SizeIs(2));
  EXPECT_EQ(tabs[0].title, "");
  EXPECT_EQ(tabs[0].urlString, "");
  EXPECT_EQ(tabs[1].title, "about:blank");
}

TEST(TabListText, OnlyAOneMeansActive) {
  for (const auto* active : {"0", "", "true", "11", " 1", "1 ", "01", "-1"}) {
    const auto tabs = parsed(std::string("1\t1\t") + active + "\tA\tu\n");
    ASSERT_THAT(tabs, SizeIs(1)) << active;
    EXPECT_FALSE(tabs.front().isActive) << active;
  }
}

TEST(TabListText, OfATitleWithATabTheRestFallsIntoTheAddress) {
  const auto tabs = parsed("1\t1\t0\tone\ttwo\tthree\thttps://example.org\n");
  ASSERT_THAT(tabs, SizeIs(1));
  EXPECT_EQ(tabs.front().title, "one");
  EXPECT_EQ(tabs.front().urlString, "two\tthree\thttps://example.org");
}

TEST(TabListText, ATitleWithALineFeedLosesItsTabAndNoOther) {
  std::vector<std::string> ids;
  for (const auto& tab : parsed("1\t1\t0\tA\tu\n1\t2\t0\tone\ntwo\thttps://example.org\n1\t3\t0\tC\tu\n")) {
    ids.push_back(tab.id);
  }
  EXPECT_THAT(ids, ElementsAre("com.apple.Safari:w1:t1", "com.apple.Safari:w1:t3"));
}

TEST(TabListText, WhatStandsBehindALineFeedCountsIfItLooksLikeARecord) {
  const auto tabs = parsed("1\t2\t0\tone\n7\t8\t1\ttwo\thttps://example.org\n");
  ASSERT_THAT(tabs, SizeIs(1));
  EXPECT_EQ(tabs.front().id, "com.apple.Safari:w7:t8");
}

TEST(TabListText, ABlankTitleIsTheAddress) {
  for (const auto* title : {"   ", "", "\r", "\u00A0\u3000", "\u2028"}) {
    const auto tabs = parsed(std::string("1\t1\t0\t") + title + "\thttps://example.org\n");
    ASSERT_THAT(tabs, SizeIs(1));
    EXPECT_EQ(tabs.front().title, "https://example.org");
  }
}

TEST(TabListText, ATitleIsTrimmedAtBothEndsAndAnAddressIsNot) {
  const auto tabs = parsed("1\t1\t0\t \u00A0A  B\r\u2029\t https://example.org \r\n");
  ASSERT_THAT(tabs, SizeIs(1));
  EXPECT_EQ(tabs.front().title, "A  B");
  EXPECT_EQ(tabs.front().urlString, " https://example.org \r");
}

TEST(TabListText, ABlankTitleBesideABlankAddressBecomesThatAddressAsItStands) {
  EXPECT_EQ(parsed("1\t1\t0\t \t  \n").front().title, "  ");
}

TEST(TabListText, ALineWithoutFiveFieldsIsSkipped) {
  EXPECT_THAT(parsed("nothing\n1\n1\t1\n1\t1\t0\n1\t1\t0\tfour\n\t\t\t\n1\t2\t0\tA\tu\n"), SizeIs(1));
}

TEST(TabListText, ARecordWhoseWindowIsNoNumberIsSkipped) {
  EXPECT_THAT(parsed("one\t1\t0\tA\tu\n"), IsEmpty());
  EXPECT_THAT(parsed("\t1\t0\tA\tu\n"), IsEmpty());
  EXPECT_THAT(parsed(" 1\t1\t0\tA\tu\n"), IsEmpty());
}

TEST(TabListText, ARecordWhoseTabIsNoNumberIsSkipped) {
  EXPECT_THAT(parsed("1\tone\t0\tA\tu\n"), IsEmpty());
  EXPECT_THAT(parsed("1\t\t0\tA\tu\n"), IsEmpty());
  EXPECT_THAT(parsed("1\t1.0\t0\tA\tu\n"), IsEmpty());
}

TEST(TabListText, ANumberThatIsTooLargeIsNone) {
  EXPECT_THAT(parsed("9223372036854775808\t1\t0\tA\tu\n1\t9223372036854775807\t0\tA\tu\n"), SizeIs(1));
}

TEST(TabListText, NumbersStandInTheIdInDecimalHoweverTheyWereWritten) {
  EXPECT_EQ(parsed("+02\t-0\t0\tA\tu\n").front().id, "com.apple.Safari:w2:t0");
}

TEST(TabListText, TabsWithOneNumberInTwoWindowsHaveDifferentIds) {
  const auto tabs = parsed("1\t1\t1\tA\tu\n2\t1\t1\tA\tu\n");
  ASSERT_THAT(tabs, SizeIs(2));
  EXPECT_EQ(tabs[0].id, "com.apple.Safari:w1:t1");
  EXPECT_EQ(tabs[1].id, "com.apple.Safari:w2:t1");
  EXPECT_TRUE(tabs[0].isActive && tabs[1].isActive);
}

TEST(TabListText, ARecordThatComesTwiceIsThereTwice) {
  EXPECT_THAT(parsed("1\t1\t0\tA\tu\n1\t1\t0\tA\tu\n"), SizeIs(2));
}

TEST(TabListText, TitlesOfAnyScriptLengthAndContentArriveAsTheyAre) {
  const std::string titles[] = {"שלום עולם", "👩‍👩‍👧 emoji", "<b>bold</b> &amp; more",
                                // NOLINTNEXTLINE(misc-misleading-bidirectional): that is the point.
                                "a\x01\x1B[31m", std::string("nul\0within", 10), "\u202Egnp.exe", "broken \xC3\x28\xFF",
                                std::string(100000, 'x')};
  for (const auto& title : titles) {
    const auto tabs = parsed("1\t1\t0\t" + title + "\tu\n");
    ASSERT_THAT(tabs, SizeIs(1)) << title;
    EXPECT_EQ(tabs.front().title, title);
  }
}

TEST(TabListText, TheBrowserIsNamedInEachTab) {
  const auto tabs = BrowserTabMonitor::parse("1\t1\t0\tA\tu\n", chrome);
  EXPECT_EQ(tabs.front().browserBundleID, chrome);
  EXPECT_EQ(tabs.front().id, "com.google.Chrome:w1:t1");
}

// Queries and polls. --------------------------------------------------------------------------------------------------

class TabMonitor : public ::testing::Test {
 protected:
  using Line = RecordingLogSink::Line;

  TabMonitor() : monitor(scripting, time.runtime(log)) {}
  ~TabMonitor() override { time.shutDown(); }

  static Line line(LogLevel level, const std::string& message) {
    return {level, "app.quillmere.host", "BrowserTabMonitor", message};
  }
  /// Consumes the stream from now on.
  void listen(Duration interval = 3s) {
    consumer = startTask(time.main(), [this, interval](TaskContext&) -> Async<void> {
      auto elements = monitor.stream(
          [this] {
            EXPECT_TRUE(time.main().isCurrent());
            ++askedForBrowsers;
            return running;
          },
          interval);
      while (true) {
        auto element = co_await elements.next();
        if (!element) co_return;
        seen.push_back(std::move(*element));
      }
    });
    time.runUntilIdle();
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryTabScripting scripting;
  BrowserTabMonitor monitor;
  std::set<std::string> running;
  int askedForBrowsers = 0;
  std::vector<BrowserTabMonitor::Tabs> seen;
  Task consumer;
};

TEST_F(TabMonitor, AQueryRunsTheBrowsersScriptAndReadsItsText) {
  scripting.setText(safari, "1\t1\t1\tA\tu\n1\t2\t0\tB\tv\n");
  const auto tabs = monitor.queryTabs(safari);
  ASSERT_TRUE(tabs);
  EXPECT_THAT(*tabs, SizeIs(2));
  ASSERT_THAT(scripting.executed(), SizeIs(1));
  EXPECT_EQ(scripting.executed().front().source, scripttexts::safariQuery);
  EXPECT_EQ(scripting.executed().front().request.kind, TabRequest::Kind::query);
  EXPECT_EQ(scripting.executed().front().request.bundleID, safari);
  EXPECT_THAT(log.lines(), ElementsAre(line(LogLevel::info, "queryTabs com.apple.Safari → 2 tab(s)")));
}

TEST_F(TabMonitor, ABrowserWithoutAScriptIsNotAsked) {
  EXPECT_EQ(monitor.queryTabs("org.mozilla.firefox"), std::nullopt);
  EXPECT_THAT(scripting.compiled(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TabMonitor, AScriptThatDoesNotCompileIsToldAsAnErrorAndGivesNothing) {
  scripting.failToCompile({});
  EXPECT_EQ(monitor.queryTabs(chrome), std::nullopt);
  EXPECT_THAT(scripting.executed(), IsEmpty());
  EXPECT_THAT(log.lines(), ElementsAre(line(LogLevel::error, "could not compile AppleScript for com.google.Chrome")));
}

TEST_F(TabMonitor, AScriptThatFailsIsToldWithItsNumberAndMessageAndGivesNothing) {
  scripting.setText(chrome, "1\t1\t1\tA\tu\n");
  scripting.failToExecute({}, {"Not authorized to send Apple events to Google Chrome.", "the description", -1743});
  EXPECT_EQ(monitor.queryTabs(chrome), std::nullopt);
  EXPECT_THAT(log.lines(), ElementsAre(line(LogLevel::standard,
                                            "AppleScript [com.google.Chrome] err -1743 — Not authorized to send Apple "
                                            "events to Google Chrome.")));
}

TEST_F(TabMonitor, AnErrorWithoutAMessageIsToldByItsDescription) {
  scripting.failToExecute({}, {std::nullopt, "{ it = 7; }", 0});
  EXPECT_EQ(monitor.queryTabs(chrome), std::nullopt);
  EXPECT_THAT(log.lines(),
              ElementsAre(line(LogLevel::standard, "AppleScript [com.google.Chrome] err 0 — { it = 7; }")));
}

TEST_F(TabMonitor, AnEmptyMessageIsAMessage) {
  scripting.failToExecute({}, {"", "the description", 5});
  EXPECT_FALSE(monitor.queryTabs(chrome));
  EXPECT_THAT(log.messages(), ElementsAre("AppleScript [com.google.Chrome] err 5 — "));
}

TEST_F(TabMonitor, AnErrorsWordsAreOneLineOfTheLogHoweverLongTheyAre) {
  scripting.failToExecute({}, {"one\ntwo\x1B[31m" + std::string(100000, 'x'), "", 1});
  EXPECT_FALSE(monitor.queryTabs(chrome));
  ASSERT_THAT(log.messages(), SizeIs(1));
  EXPECT_THAT(log.messages().front(), ::testing::StartsWith("AppleScript [com.google.Chrome] err 1 — one two [31mxxx"));
  EXPECT_LT(log.messages().front().size(), 1200U);
}

TEST_F(TabMonitor, AResultWithoutATextIsNoTabs) {
  scripting.setText(chrome, std::nullopt);
  const auto tabs = monitor.queryTabs(chrome);
  ASSERT_TRUE(tabs);
  EXPECT_THAT(*tabs, IsEmpty());
  EXPECT_THAT(log.messages(), ElementsAre("queryTabs com.google.Chrome → 0 tab(s)"));
}

TEST_F(TabMonitor, AnEmptyResultIsAnEmptyListUnderTheBrowser) {
  running = {chrome};
  listen();
  ASSERT_THAT(seen, SizeIs(1));
  ASSERT_THAT(seen.front(), ElementsAre(Key(chrome)));
  EXPECT_THAT(seen.front().at(chrome), IsEmpty());
}

TEST_F(TabMonitor, OnlyBrowsersThatRunAreAsked) {
  running = {chrome, safari};
  listen();
  std::vector<std::string> asked;
  for (const auto& script : scripting.compiled()) asked.push_back(script.request.bundleID);
  EXPECT_THAT(asked, ::testing::UnorderedElementsAre(chrome, safari));
  ASSERT_THAT(seen, SizeIs(1));
  EXPECT_THAT(seen.front(), ElementsAre(Key(safari), Key(chrome)));
}

TEST_F(TabMonitor, WhatRunsButHasNoScriptIsNotInTheElement) {
  running = {"org.mozilla.firefox", chrome};
  listen();
  EXPECT_THAT(seen.front(), ElementsAre(Key(chrome)));
}

TEST_F(TabMonitor, WithoutABrowserTheElementsAreEmptyAndComeAllTheSame) {
  listen();
  time.advance(6s);
  EXPECT_THAT(seen, ElementsAre(IsEmpty(), IsEmpty(), IsEmpty()));
  EXPECT_THAT(scripting.compiled(), IsEmpty());
}

TEST_F(TabMonitor, ABrowserThatFailsIsLeftOutOfThatElementAndIsThereInTheNext) {
  running = {chrome, safari};
  scripting.setText(chrome, "1\t1\t1\tA\tu\n");
  listen();
  scripting.failToExecute({std::nullopt, chrome}, {"No.", "", 1});
  time.advance(3s);
  time.advance(3s);
  ASSERT_THAT(seen, SizeIs(3));
  EXPECT_THAT(seen[0], ElementsAre(Key(safari), Key(chrome)));
  EXPECT_THAT(seen[1], ElementsAre(Key(safari)));
  EXPECT_EQ(seen[2], seen[0]);
}

TEST_F(TabMonitor, AnElementComesEachPeriodChangedOrNot) {
  running = {chrome};
  scripting.setText(chrome, "1\t1\t1\tA\tu\n");
  listen();
  EXPECT_THAT(seen, SizeIs(1));
  time.advance(2999ms);
  EXPECT_THAT(seen, SizeIs(1));
  time.advance(1ms);
  ASSERT_THAT(seen, SizeIs(2));
  EXPECT_EQ(seen[0], seen[1]);
}

TEST_F(TabMonitor, ThePeriodIsTheCallers) {
  listen(500ms);
  time.advance(2s);
  EXPECT_THAT(seen, SizeIs(5));
}

TEST_F(TabMonitor, WhichBrowsersRunIsAskedAtEachPollOnTheMainThread) {
  listen();
  running = {chrome};
  time.advance(3s);
  EXPECT_EQ(askedForBrowsers, 2);
  EXPECT_THAT(seen.back(), ElementsAre(Key(chrome)));
}

TEST_F(TabMonitor, AnAbandonedStreamAsksNoMore) {
  running = {chrome};
  listen();
  consumer.cancel();
  time.advance(3s);
  const auto asked = scripting.compiled().size();
  time.advance(30s);
  EXPECT_THAT(scripting.compiled(), SizeIs(asked));
}

TEST_F(TabMonitor, EachStreamPollsForItself) {
  running = {chrome};
  listen();
  auto second = monitor.stream([] { return std::set<std::string>{safari}; }, 1s);
  time.advance(3s);
  EXPECT_THAT(seen, SizeIs(2));
  int ofSafari = 0;
  for (const auto& script : scripting.executed()) ofSafari += script.request.bundleID == safari ? 1 : 0;
  EXPECT_EQ(ofSafari, 4);
}

}  // namespace
}  // namespace quillmere
