// Equality, hashes and the fixed sets of the records.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/AudioApp.h"
#include "core/DuckRule.h"
#include "core/Profile.h"
#include "core/QuillmereIPC.h"

namespace quillmere {
namespace {

template <typename Record>
std::size_t hashOf(const Record& record) {
  return std::hash<Record>{}(record);
}

AudioApp sampleApp() { return {"com.spotify.client", "Spotify", 0.25F, true, "usb-headset"}; }

Profile sampleProfile() {
  return {*Uuid::parse("0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6"), "Work", {sampleApp()}, "focus.work", Date{700000000.5}};
}

DuckRule sampleRule() { return {{"us.zoom.xos"}, {"com.spotify.client"}, 0.3F, 300, 1500}; }

TEST(AudioApp, ItsIdentityIsTheBundleID) { EXPECT_EQ(sampleApp().id(), "com.spotify.client"); }

TEST(AudioApp, EqualityTakesEveryField) {
  const auto base = sampleApp();
  EXPECT_EQ(base, sampleApp());
  const std::vector<std::function<void(AudioApp&)>> changes = {
      [](AudioApp& app) { app.bundleID += "2"; },       [](AudioApp& app) { app.name += "2"; },
      [](AudioApp& app) { app.gain = 0.26F; },          [](AudioApp& app) { app.muted = false; },
      [](AudioApp& app) { app.routedDeviceUID = "x"; }, [](AudioApp& app) { app.routedDeviceUID.reset(); },
  };
  for (std::size_t index = 0; index < changes.size(); ++index) {
    auto other = base;
    changes[index](other);
    EXPECT_NE(base, other) << index;
    EXPECT_NE(hashOf(base), hashOf(other)) << index;
  }
}

TEST(AudioApp, ZeroAndMinusZeroAreEqualAndHashAlike) {
  auto zero = sampleApp();
  auto minusZero = sampleApp();
  zero.gain = 0.0F;
  minusZero.gain = -0.0F;
  EXPECT_EQ(zero, minusZero);
  EXPECT_EQ(hashOf(zero), hashOf(minusZero));
}

TEST(AudioApp, NaNEqualsNothing) {
  auto app = sampleApp();
  app.gain = std::numeric_limits<float>::quiet_NaN();
  const auto same = app;
  EXPECT_NE(app, same);
}

TEST(AudioApp, AnAbsentRouteIsNotAnEmptyOne) {
  auto absent = sampleApp();
  auto empty = sampleApp();
  absent.routedDeviceUID.reset();
  empty.routedDeviceUID = "";
  EXPECT_NE(absent, empty);
  EXPECT_NE(hashOf(absent), hashOf(empty));
}

TEST(AudioApp, HashesKeepNeighbouringTextsApart) {
  EXPECT_NE(hashOf(AudioApp{"ab", "c", 1.0F, false, {}}), hashOf(AudioApp{"a", "bc", 1.0F, false, {}}));
}

TEST(Profile, EqualityTakesEveryField) {
  const auto base = sampleProfile();
  EXPECT_EQ(base, sampleProfile());
  EXPECT_EQ(hashOf(base), hashOf(sampleProfile()));
  const std::vector<std::function<void(Profile&)>> changes = {
      [](Profile& profile) { profile.id = Uuid{}; },
      [](Profile& profile) { profile.name = "Home"; },
      [](Profile& profile) { profile.apps[0].gain = 1.0F; },
      [](Profile& profile) { profile.apps.clear(); },
      [](Profile& profile) { profile.focusModeID.reset(); },
      [](Profile& profile) { profile.updatedAt = Date{700000001.5}; },
  };
  for (std::size_t index = 0; index < changes.size(); ++index) {
    auto other = base;
    changes[index](other);
    EXPECT_NE(base, other) << index;
    EXPECT_NE(hashOf(base), hashOf(other)) << index;
  }
}

TEST(Profile, TheOrderOfItsAppsCounts) {
  auto forth = sampleProfile();
  forth.apps = {AudioApp{"a", "A", 1.0F, false, {}}, AudioApp{"b", "B", 1.0F, false, {}}};
  auto back = forth;
  std::reverse(back.apps.begin(), back.apps.end());
  EXPECT_NE(forth, back);
}

TEST(DuckRule, SetsOfAnotherOrderAreEqualAndHashAlike) {
  auto forth = sampleRule();
  auto back = sampleRule();
  for (const char* name : {"a", "b", "c"}) forth.triggerBundleIDs.insert(name);
  for (const char* name : {"c", "b", "a"}) back.triggerBundleIDs.insert(name);
  EXPECT_EQ(forth, back);
  EXPECT_EQ(hashOf(forth), hashOf(back));
}

TEST(DuckRule, EqualityTakesEveryField) {
  const auto base = sampleRule();
  const std::vector<std::function<void(DuckRule&)>> changes = {
      [](DuckRule& rule) { rule.triggerBundleIDs.insert("x"); }, [](DuckRule& rule) { rule.duckedBundleIDs.clear(); },
      [](DuckRule& rule) { rule.targetGain = 0.31F; },           [](DuckRule& rule) { rule.fadeMillis = -1; },
      [](DuckRule& rule) { rule.restoreDelayMillis = 0; },
  };
  for (std::size_t index = 0; index < changes.size(); ++index) {
    auto other = base;
    changes[index](other);
    EXPECT_NE(base, other) << index;
    EXPECT_NE(hashOf(base), hashOf(other)) << index;
  }
}

TEST(DuckRule, AnAppThatMovesFromOneSetToTheOtherChangesTheHash) {
  auto trigger = sampleRule();
  auto ducked = sampleRule();
  trigger.triggerBundleIDs.insert("x");
  ducked.duckedBundleIDs.insert("x");
  EXPECT_NE(hashOf(trigger), hashOf(ducked));
}

TEST(DuckRule, DefaultMeetingAppsAreTheseEight) {
  EXPECT_THAT(DuckRule::defaultMeetingApps(),
              testing::UnorderedElementsAre("us.zoom.xos", "com.microsoft.teams2", "com.microsoft.teams",
                                            "com.tinyspeck.slackmacgap", "com.hnc.Discord", "com.apple.FaceTime",
                                            "com.google.Chrome", "com.apple.Safari"));
}

TEST(DuckRule, BrowserAppsAreTheseSix) {
  EXPECT_THAT(DuckRule::browserApps(),
              testing::UnorderedElementsAre("com.google.Chrome", "com.apple.Safari", "company.thebrowser.Browser",
                                            "com.microsoft.edgemac", "com.brave.Browser", "org.mozilla.firefox"));
}

TEST(DuckRule, DefaultMusicAppsAreEightPlayersAndAllBrowsers) {
  std::set<std::string> expected{"com.spotify.client", "com.apple.Music",          "com.apple.Podcasts",
                                 "com.apple.iTunes",   "com.tidal.desktop",        "com.amazon.Music",
                                 "tv.plex.player",     "com.deezer.deezer-desktop"};
  expected.insert(DuckRule::browserApps().begin(), DuckRule::browserApps().end());
  EXPECT_EQ(DuckRule::defaultMusicApps(), expected);
  EXPECT_EQ(DuckRule::defaultMusicApps().size(), 14U);
}

TEST(DuckRule, MeetingAndMusicAppsShareExactlyTwoBrowsers) {
  std::vector<std::string> shared;
  std::set_intersection(DuckRule::defaultMeetingApps().begin(), DuckRule::defaultMeetingApps().end(),
                        DuckRule::defaultMusicApps().begin(), DuckRule::defaultMusicApps().end(),
                        std::back_inserter(shared));
  EXPECT_THAT(shared, testing::UnorderedElementsAre("com.google.Chrome", "com.apple.Safari"));
}

using Answer = std::pair<const std::set<std::string>*, std::size_t>;

/// Two threads that wait for each other and ask at the same moment. Ends the process: with 0 if they were given one
/// set, and that a whole one.
[[noreturn]] void askAtOnce() {
  std::atomic<int> ready{0};
  std::array<Answer, 2> answers;
  std::vector<std::thread> threads;
  for (auto& answer : answers) {
    threads.emplace_back([&answer, &ready] {
      ++ready;
      while (ready < 2) continue;
      const auto& apps = DuckRule::defaultMusicApps();
      answer = {&apps, apps.size()};
    });
  }
  for (auto& thread : threads) thread.join();
  std::_Exit(answers[0] == answers[1] && answers[0].second == 14 ? 0 : 1);
}

// Only the first question of a process makes the sets, so each try is a process.
TEST(DuckRuleDeathTest, TheSetsAreMadeOnceHoweverManyThreadsAskFirst) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (int attempt = 0; attempt < 50; ++attempt) EXPECT_EXIT(askAtOnce(), testing::ExitedWithCode(0), "");
}

TEST(AudioApp, AnIdentifierInAnotherSpellingOfTheSameCharactersIsAnother) {
  auto composed = sampleApp();
  composed.bundleID = "org.example.caf\u00E9";
  auto decomposed = composed;
  decomposed.bundleID = "org.example.cafe\u0301";
  EXPECT_FALSE(composed == decomposed);
  EXPECT_EQ((std::set<std::string>{composed.bundleID, decomposed.bundleID}.size()), 2U);
}

TEST(QuillmereIPC, NamesTheDriverService) { EXPECT_STREQ(QuillmereIPC::machServiceName, "app.quillmere.driver"); }

}  // namespace
}  // namespace quillmere
