// When the feed is asked, and what of it is believed.
#include "integrations/ReleaseUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "core/Product.h"
#include "core/VersionOrder.h"
#include "platform/memory/MemoryReleaseFeed.h"
#include "platform/memory/MemoryUserDefaults.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Version = std::optional<std::string>;

class Updates : public ::testing::Test {
 protected:
  ~Updates() override {
    updater.reset();
    time.shutDown();
  }
  /// The program starts, and a minute passes.
  ReleaseUpdater& start() {
    updater.emplace(feed, defaults, workspace, time.runtime(log));
    updater->start();
    time.advance(1min);
    return *updater;
  }
  /// What is known after an answer of this text.
  Version knownAfter(std::string text) {
    start();
    feed.answer(std::move(text));
    return *updater->latestVersion();
  }
  [[nodiscard]] std::string onlyLine() const {
    return log.lines().size() == 1 ? log.lines().front().message : "lines: " + std::to_string(log.lines().size());
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryReleaseFeed feed;
  MemoryUserDefaults defaults;
  MemoryWorkspace workspace;
  std::optional<ReleaseUpdater> updater;
};

TEST_F(Updates, NothingIsKnownAndNothingAskedAtFirst) {
  updater.emplace(feed, defaults, workspace, time.runtime(log));
  time.advance(48h);
  EXPECT_EQ(*updater->latestVersion(), std::nullopt);
  EXPECT_EQ(feed.fetches(), 0);
}

TEST_F(Updates, TheFeedIsAskedAMinuteAfterTheStart) {
  updater.emplace(feed, defaults, workspace, time.runtime(log));
  updater->start();
  time.advance(59s);
  EXPECT_EQ(feed.fetches(), 0);
  time.advance(1s);
  EXPECT_EQ(feed.fetches(), 1);
}

TEST_F(Updates, ThenOnceADay) {
  start();
  time.advance(24h - 1s);
  EXPECT_EQ(feed.fetches(), 1);
  time.advance(1s);
  EXPECT_EQ(feed.fetches(), 2);
  time.advance(240h);
  EXPECT_EQ(feed.fetches(), 12);
}

TEST_F(Updates, AProgramThatStartsAgainAndAgainAsksOnceADay) {
  for (int i = 0; i < 20; ++i) start();
  EXPECT_EQ(feed.fetches(), 1);
  time.advance(23h);
  start();
  EXPECT_EQ(feed.fetches(), 1);
  time.advance(1h);
  EXPECT_EQ(feed.fetches(), 2);
}

TEST_F(Updates, AFeedThatDoesNotAnswerIsNotAskedSoonerForThat) {
  start();
  feed.fail("no network");
  EXPECT_EQ(onlyLine(), "the release feed can't be had: no network");
  start();
  time.advance(12h);
  EXPECT_EQ(feed.fetches(), 1);
}

TEST_F(Updates, AClockThatWasInTheFutureHoldsNothingUp) {
  defaults.set(ReleaseUpdater::checkedKey, time.now().advancedBy(1e9).secondsSinceReference);
  start();
  EXPECT_EQ(feed.fetches(), 1);
}

TEST_F(Updates, AnOddTimeInTheSettingsHoldsNothingUp) {
  for (const auto& odd : {DefaultsValue(std::numeric_limits<double>::quiet_NaN()),
                          DefaultsValue(std::numeric_limits<double>::infinity()), DefaultsValue("yesterday"),
                          DefaultsValue(-1e300)}) {
    defaults.set(ReleaseUpdater::checkedKey, odd);
    const int before = feed.fetches();
    start();
    EXPECT_EQ(feed.fetches(), before + 1);
  }
}

TEST_F(Updates, TheVersionOfTheFeedIsKnownAndTold) {
  start();
  std::vector<Version> told;
  const auto watch = updater->latestVersion().observe([&](const Version& version) { told.push_back(version); });
  feed.answer(R"({"version": "1.10.2", "notes": ["anything", 7, null]})");
  EXPECT_THAT(told, ElementsAre(Version("1.10.2")));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Updates, WhatWasKnownIsKnownAtTheNextStart) {
  start();
  feed.answer(R"({"version": "1.10.2"})");
  updater.reset();
  updater.emplace(feed, defaults, workspace, time.runtime(log));
  EXPECT_EQ(*updater->latestVersion(), "1.10.2");
}

TEST_F(Updates, AnOddVersionInTheSettingsIsNotKnown) {
  for (const auto& odd : {DefaultsValue(""), DefaultsValue("<b>9</b>"), DefaultsValue(9.0), DefaultsValue(true)}) {
    defaults.set(ReleaseUpdater::versionKey, odd);
    updater.emplace(feed, defaults, workspace, time.runtime(log));
    EXPECT_EQ(*updater->latestVersion(), std::nullopt);
  }
}

TEST_F(Updates, AnUnreadableFeedChangesNothingAndIsLoggedOnce) {
  start();
  feed.answer(R"({"version": "2.0"})");
  for (const std::string& bad :
       {std::string(), std::string("<html>Not found</html>"), std::string("{\"version\": \"3.0\""),
        std::string("[\"3.0\"]"), std::string("\"3.0\""), std::string("null"), std::string(R"({"version": 3.0})"),
        std::string(R"({"version": ["3.0"]})"), std::string(R"({"Version": "3.0"})"), std::string(R"({"version": ""})"),
        std::string(R"({"version": "3.0 <script>"})"), std::string(R"({"version": "3.0\n"})"),
        std::string(R"({"version": ".3"})"), std::string(R"({"version": "v3.0"})"),
        std::string(R"({"version": "-3"})"), "{\"version\": \"" + std::string(65, '9') + "\"}",
        std::string("\xFF\xFE\x00{", 4), std::string(200000, '['), std::string(200000, '\0')}) {
    log.clear();
    time.advance(24h);
    feed.answer(bad);
    EXPECT_EQ(*updater->latestVersion(), "2.0") << bad.substr(0, 40);
    EXPECT_THAT(onlyLine(), HasSubstr("the release feed is ignored: ")) << bad.substr(0, 40);
  }
}

TEST_F(Updates, AVersionOfHugeNumbersIsNoNewerThanNone) {
  const auto known = knownAfter(R"({"version": "99999999999999999999999999999999999.0"})");
  ASSERT_TRUE(known);
  EXPECT_FALSE(isOutdated("0.1", *known));
}

TEST_F(Updates, AnOlderVersionThanTheLastIsBelieved) {
  start();
  feed.answer(R"({"version": "2.0"})");
  time.advance(24h);
  feed.answer(R"({"version": "1.0"})");
  EXPECT_EQ(*updater->latestVersion(), "1.0") << "a release may be taken back";
}

TEST_F(Updates, ThePersonsCheckLeadsToTheDownloadPage) {
  start();
  updater->checkForUpdates();
  EXPECT_EQ(workspace.openedURLs(), std::vector<std::string>{downloadAddress()});
}

TEST_F(Updates, ThePersonsCheckAsksTheFeedTooWhereADayHasPassed) {
  updater.emplace(feed, defaults, workspace, time.runtime(log));
  updater->checkForUpdates();
  EXPECT_EQ(feed.fetches(), 1);
  updater->checkForUpdates();
  EXPECT_EQ(feed.fetches(), 1);
  EXPECT_EQ(workspace.openedURLs().size(), 2U);
}

TEST_F(Updates, AnAnswerThatComesTooLateIsNobodys) {
  start();
  updater.reset();
  feed.answer(R"({"version": "2.0"})");
  time.advance(48h);
  EXPECT_EQ(defaults.string(ReleaseUpdater::versionKey), std::nullopt);
  EXPECT_EQ(feed.fetches(), 1);
}

}  // namespace
}  // namespace quillmere
