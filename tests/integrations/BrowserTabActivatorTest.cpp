// From a tab's id to the script that brings it to the front.
#include "integrations/BrowserTabActivator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BrowserScriptTexts.h"
#include "Browsers.h"
#include "platform/memory/MemoryTabScripting.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

class TabActivator : public ::testing::Test {
 protected:
  TabActivator() : activator(scripting, time.runtime(log)) {}
  ~TabActivator() override { time.shutDown(); }

  static BrowserTab tab(const std::string& id) {
    BrowserTab made;
    made.id = id;
    return made;
  }
  /// What was run for a tab of this id.
  MemoryTabScripting::Script activated(const std::string& bundleID, const std::string& id) {
    scripting.clearRecords();
    activator.activate(bundleID, tab(id));
    time.runUntilIdle();
    const auto scripts = scripting.activations();
    EXPECT_THAT(scripts, SizeIs(1)) << id;
    return scripts.empty() ? MemoryTabScripting::Script{} : scripts.front();
  }
  /// The numbers of the window and of the tab that were asked for.
  std::pair<std::int64_t, std::int64_t> numbers(const std::string& id) {
    const auto request = activated(chrome, id).request;
    return {request.window, request.tab};
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryTabScripting scripting;
  BrowserTabActivator activator;
};

TEST_F(TabActivator, EachBrowserGetsItsScriptToTheByte) {
  const std::vector<std::pair<std::string, std::string>> expected{
      {chrome, scripttexts::chromeActivation},
      {"com.brave.Browser", scripttexts::braveActivation},
      {"company.thebrowser.Browser", scripttexts::arcActivation},
      {"com.microsoft.edgemac", scripttexts::edgeActivation},
      {safari, scripttexts::safariActivation}};
  for (const auto& [bundleID, source] : expected) {
    const auto script = activated(bundleID, bundleID + ":w2:t7");
    EXPECT_EQ(script.source, source);
    EXPECT_EQ(script.request.bundleID, bundleID);
  }
}

TEST_F(TabActivator, AnUnknownBrowserCountsAsChrome) {
  const auto script = activated("org.example.browser", "org.example.browser:w2:t7");
  EXPECT_EQ(script.source, scripttexts::chromeActivation);
  EXPECT_EQ(script.request.bundleID, chrome) << "whom the script speaks to";
}

TEST_F(TabActivator, WindowAndTabAreThoseOfTheId) { EXPECT_THAT(numbers("com.apple.Safari:w2:t7"), Pair(2, 7)); }

TEST_F(TabActivator, AnIdWithoutAColonIsTheFirstTabOfTheFirstWindow) { EXPECT_THAT(numbers("nonsense"), Pair(1, 1)); }

TEST_F(TabActivator, AnEmptyIdIsTheFirstTabOfTheFirstWindow) {
  EXPECT_THAT(numbers(""), Pair(1, 1));
  EXPECT_THAT(numbers(":::"), Pair(1, 1));
}

TEST_F(TabActivator, AWindowWithoutANumberIsTheFirst) { EXPECT_THAT(numbers("x:w:t5"), Pair(1, 5)); }

TEST_F(TabActivator, ATabWithoutANumberIsTheFirst) {
  EXPECT_THAT(numbers("x:w3:t"), Pair(3, 1));
  EXPECT_THAT(numbers("x:w3:two"), Pair(3, 1));
}

TEST_F(TabActivator, EmptyPiecesOfAnIdDoNotCount) { EXPECT_THAT(numbers("::x:::w3::t4::"), Pair(3, 4)); }

TEST_F(TabActivator, OfAnIdWithTwoPiecesTheSecondIsWindowAndTab) { EXPECT_THAT(numbers("x:w3"), Pair(3, 3)); }

TEST_F(TabActivator, OfAnIdWithMorePiecesTheSecondAndTheLastCount) { EXPECT_THAT(numbers("x:w3:y9:t4"), Pair(3, 4)); }

TEST_F(TabActivator, TheFirstCharacterOfAPieceIsLeftOutWhateverItIs) {
  EXPECT_THAT(numbers("x:23:45"), Pair(3, 5));
  EXPECT_THAT(numbers("x:é3:音4"), Pair(3, 4));
}

TEST_F(TabActivator, NumbersMayHaveASign) { EXPECT_THAT(numbers("x:w-3:t+4"), Pair(-3, 4)); }

TEST_F(TabActivator, ANumberThatIsTooLargeIsTheFirst) {
  EXPECT_THAT(numbers("x:w9223372036854775808:t9223372036854775807"), Pair(1, INT64_MAX));
}

TEST_F(TabActivator, BytesThatAreNoUtf8AreNoNumber) { EXPECT_THAT(numbers("x:\xC3:\x80\x80"), Pair(1, 1)); }

TEST_F(TabActivator, NothingReachesTheBrowserBeforeTheCallReturns) {
  activator.activate(chrome, tab("x:w1:t1"));
  EXPECT_THAT(scripting.compiled(), IsEmpty());
  time.runUntilIdle();
  EXPECT_THAT(scripting.activations(), SizeIs(1));
}

TEST_F(TabActivator, TwoClicksRunTwoScripts) {
  activator.activate(chrome, tab("x:w1:t1"));
  activator.activate(chrome, tab("x:w1:t1"));
  time.runUntilIdle();
  EXPECT_THAT(scripting.activations(), SizeIs(2));
}

TEST_F(TabActivator, WhatWasAskedForIsDoneEvenWhenTheActivatorHasGone) {
  {
    const BrowserTabActivator gone(scripting, time.runtime(log));
    gone.activate(chrome, tab("x:w1:t1"));
  }
  time.runUntilIdle();
  EXPECT_THAT(scripting.activations(), SizeIs(1));
}

TEST_F(TabActivator, ASuccessIsNotLogged) {
  activated(chrome, "x:w1:t1");
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TabActivator, AScriptThatDoesNotCompileEndsWithoutAWord) {
  scripting.failToCompile({});
  activator.activate(chrome, tab("x:w1:t1"));
  time.runUntilIdle();
  EXPECT_THAT(scripting.compiled(), SizeIs(1));
  EXPECT_THAT(scripting.executed(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TabActivator, AFailureIsLoggedWithTheBrowserAndItsMessage) {
  scripting.failToExecute({}, {"Application isn’t running.", "the description", -600});
  activated(safari, "x:w1:t1");
  EXPECT_THAT(log.lines(), ElementsAre(RecordingLogSink::Line{
                               LogLevel::standard, "app.quillmere.host", "BrowserTabActivator",
                               "activate tab failed for com.apple.Safari: Application isn’t running."}));
}

TEST_F(TabActivator, AFailureWithoutAMessageIsLoggedWithItsDescription) {
  scripting.failToExecute({}, {std::nullopt, "{ it = 7; }", 0});
  activated(chrome, "x:w1:t1");
  EXPECT_THAT(log.messages(), ElementsAre("activate tab failed for com.google.Chrome: { it = 7; }"));
}

TEST_F(TabActivator, AFailureOfAnUnknownBrowserIsLoggedUnderItsOwnName) {
  scripting.failToExecute({}, {"No.", "", 1});
  activated("org.example.browser", "x:w1:t1");
  EXPECT_THAT(log.messages(), ElementsAre("activate tab failed for org.example.browser: No."));
}

TEST_F(TabActivator, AFailureDoesNotKeepTheNextClickFromItsTab) {
  scripting.failToExecute({}, {"No.", "", 1});
  activator.activate(chrome, tab("x:w1:t1"));
  activator.activate(chrome, tab("x:w1:t2"));
  time.runUntilIdle();
  EXPECT_THAT(scripting.activations(), SizeIs(2));
  EXPECT_THAT(log.lines(), SizeIs(1));
}

}  // namespace
}  // namespace quillmere
