// What is read at the start, what is written, and what becomes of damaged values.
#include "state/SettingsStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "core/Json.h"
#include "platform/memory/MemoryUserDefaults.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Keys = SettingsStore::Keys;

Data bytesOf(std::string_view text) {
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

class SettingsStoreTest : public testing::Test {
 protected:
  [[nodiscard]] std::string storedText(const char* key) const {
    const auto data = defaults.data(key).value_or(Data{});
    return {reinterpret_cast<const char*>(data.data()), data.size()};
  }
  void storeText(const char* key, std::string_view text) { defaults.set(key, bytesOf(text)); }
  /// Keeps the migration out of tests that are not about it.
  void markMigrated() { defaults.set(Keys::browsersInDuckedV1, true); }

  MemoryUserDefaults defaults;
  VirtualTime time{Date{123456.5}};
  RecordingLogSink log;
  SettingsStore store{defaults, time, log};
};

DuckRule ruleWithoutBrowsers() { return {{"us.zoom.xos"}, {"com.spotify.client"}, 0.2F, 100, 200}; }

TEST_F(SettingsStoreTest, AnEmptyDatabaseGivesTheDefaultsOfAFirstRun) {
  const auto snapshot = store.load();
  ASSERT_EQ(snapshot.profiles.size(), 1U);
  EXPECT_EQ(snapshot.profiles[0].name, "Default");
  EXPECT_THAT(snapshot.profiles[0].apps, IsEmpty());
  EXPECT_FALSE(snapshot.profiles[0].focusModeID);
  EXPECT_EQ(snapshot.profiles[0].updatedAt, Date{123456.5});
  EXPECT_FALSE(snapshot.activeProfileID);
  EXPECT_EQ(snapshot.masterGain, 0.7F);
  EXPECT_FALSE(snapshot.outputDeviceUID);
  EXPECT_FALSE(snapshot.hasCompletedOnboarding);
  EXPECT_EQ(snapshot.duckRule,
            (DuckRule{DuckRule::defaultMeetingApps(), DuckRule::defaultMusicApps(), 0.3F, 300, 1500}));
  EXPECT_TRUE(snapshot.pauseOnHeadphoneDisconnect);
  EXPECT_THAT(snapshot.focusCandidateBundleIDs, IsEmpty());
  EXPECT_THAT(snapshot.persistedApps, IsEmpty());
  EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SettingsStoreTest, AFirstLoadWritesTheRuleAndTheFlagAndNothingElse) {
  static_cast<void>(store.load());
  ASSERT_EQ(defaults.writes().size(), 2U);
  EXPECT_EQ(defaults.writes()[0].key, "quillmere.duckRule");
  EXPECT_EQ(defaults.writes()[1].key, "quillmere.duckRule.browsersInDuckedV1");
  EXPECT_EQ(json::decodeDuckRule(storedText(Keys::duckRule)), SettingsStore::defaultDuckRule());
  EXPECT_EQ(defaults.boolean(Keys::browsersInDuckedV1), true);
  EXPECT_FALSE(defaults.object(Keys::profiles));
}

TEST_F(SettingsStoreTest, TwoLoadsOfAnEmptyDatabaseGiveTwoProfileIdentities) {
  const auto first = store.load();
  const auto second = store.load();
  EXPECT_NE(first.profiles[0].id, second.profiles[0].id);
}

TEST_F(SettingsStoreTest, TheMigrationAddsAllBrowsersOnceAndWritesThemBack) {
  store.persistDuckRule(ruleWithoutBrowsers());
  auto expected = ruleWithoutBrowsers();
  expected.duckedBundleIDs.insert(DuckRule::browserApps().begin(), DuckRule::browserApps().end());
  EXPECT_EQ(store.load().duckRule, expected);
  EXPECT_EQ(json::decodeDuckRule(storedText(Keys::duckRule)), expected);
  EXPECT_EQ(defaults.boolean(Keys::browsersInDuckedV1), true);

  store.persistDuckRule(ruleWithoutBrowsers());
  EXPECT_EQ(store.load().duckRule, ruleWithoutBrowsers());
}

TEST_F(SettingsStoreTest, AFlagThatIsFalseMigratesAsAnAbsentOne) {
  store.persistDuckRule(ruleWithoutBrowsers());
  defaults.set(Keys::browsersInDuckedV1, false);
  EXPECT_EQ(store.load().duckRule.duckedBundleIDs.size(), 7U);
  EXPECT_EQ(defaults.boolean(Keys::browsersInDuckedV1), true);
}

TEST_F(SettingsStoreTest, WithTheFlagSetARuleComesBackUntouchedAndNothingIsWritten) {
  store.persistDuckRule(ruleWithoutBrowsers());
  markMigrated();
  defaults.forgetWrites();
  EXPECT_EQ(store.load().duckRule, ruleWithoutBrowsers());
  EXPECT_THAT(defaults.writes(), IsEmpty());
}

TEST_F(SettingsStoreTest, ARuleThatLacksAKeyIsReplacedByTheDefaultAndTheFlagAloneDecidesTheMigration) {
  const std::string lacking = R"({"triggerBundleIDs":["x"],"duckedBundleIDs":["y"],"targetGain":0.3,"fadeMillis":300})";
  storeText(Keys::duckRule, lacking);
  markMigrated();
  EXPECT_EQ(store.load().duckRule, SettingsStore::defaultDuckRule());
  EXPECT_EQ(storedText(Keys::duckRule), lacking);

  defaults.remove(Keys::browsersInDuckedV1);
  EXPECT_EQ(store.load().duckRule, SettingsStore::defaultDuckRule());
  EXPECT_EQ(json::decodeDuckRule(storedText(Keys::duckRule)), SettingsStore::defaultDuckRule());
}

TEST_F(SettingsStoreTest, EverythingThatWasStoredIsLoaded) {
  markMigrated();
  const Profile profile{Uuid::random(), "Work", {{"a", "A", 0.5F, true, "usb"}}, "focus", Date{5.5}};
  const auto active = Uuid::random();
  store.persistProfiles({profile});
  store.persistActiveProfile(active);
  defaults.set(Keys::masterGain, 0.25);
  store.persistOutputDevice("hdmi");
  defaults.set(Keys::onboardingCompleted, true);
  store.persistDuckRule(ruleWithoutBrowsers());
  defaults.set(Keys::pauseOnHeadphoneDisconnect, false);
  store.persistFocusCandidates({"b", "a"});
  store.persistAppsState({{"a", "A", 0.5F, true, "usb"}, {"b", "B", 1.0F, false, {}}});

  const auto snapshot = SettingsStore(defaults, time, log).load();
  EXPECT_THAT(snapshot.profiles, ElementsAre(profile));
  EXPECT_EQ(snapshot.activeProfileID, active);
  EXPECT_EQ(snapshot.masterGain, 0.25F);
  EXPECT_EQ(snapshot.outputDeviceUID, "hdmi");
  EXPECT_TRUE(snapshot.hasCompletedOnboarding);
  EXPECT_EQ(snapshot.duckRule, ruleWithoutBrowsers());
  EXPECT_FALSE(snapshot.pauseOnHeadphoneDisconnect);
  EXPECT_THAT(snapshot.focusCandidateBundleIDs, UnorderedElementsAre("a", "b"));
  ASSERT_EQ(snapshot.persistedApps.size(), 2U);
  EXPECT_EQ(snapshot.persistedApps.at("a"), (AudioApp{"a", "A", 0.5F, true, "usb"}));
  EXPECT_EQ(snapshot.persistedApps.at("b"), (AudioApp{"b", "B", 1.0F, false, {}}));
  EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SettingsStoreTest, EachKindIsStoredUnderItsKeyInItsForm) {
  store.persistOutputDevice("hdmi");
  store.persistActiveProfile(Uuid::parse("0f9e2a47-1b3c-4d5e-8f60-718293a4b5c6"));
  store.persistFocusCandidates({"a"});
  store.persistAppsState({{"a", "A", 0.3F, false, {}}});
  store.persistProfiles({});
  store.persistDuckRule({{}, {}, 0.0F, 1, 2});
  EXPECT_EQ(defaults.string("quillmere.outputDeviceUID"), "hdmi");
  EXPECT_EQ(defaults.string("quillmere.activeProfileID"), "0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6");
  EXPECT_EQ(storedText("quillmere.focusCandidates"), R"(["a"])");
  EXPECT_EQ(storedText("quillmere.appsState"), R"([{"bundleID":"a","name":"A","gain":0.3,"muted":false}])");
  EXPECT_EQ(storedText("quillmere.profiles"), "[]");
  EXPECT_EQ(storedText("quillmere.duckRule"),
            R"({"triggerBundleIDs":[],"duckedBundleIDs":[],"targetGain":0,"fadeMillis":1,"restoreDelayMillis":2})");
}

TEST_F(SettingsStoreTest, AnEmptyListOfProfilesIsNoFirstRun) {
  store.persistProfiles({});
  EXPECT_THAT(store.load().profiles, IsEmpty());
}

TEST_F(SettingsStoreTest, AnAbsentValueRemovesItsKey) {
  store.persistOutputDevice("hdmi");
  store.persistActiveProfile(Uuid::random());
  store.persistOutputDevice(std::nullopt);
  store.persistActiveProfile(std::nullopt);
  EXPECT_FALSE(defaults.object(Keys::outputDeviceUID));
  EXPECT_FALSE(defaults.object(Keys::activeProfileID));
}

TEST_F(SettingsStoreTest, AnActiveProfileThatIsNoUuidIsAbsent) {
  defaults.set(Keys::activeProfileID, std::string("my profile"));
  EXPECT_FALSE(store.load().activeProfileID);
  EXPECT_EQ(log.count(LogLevel::error, "stored quillmere.activeProfileID ignored: it is not a UUID"), 1);
  EXPECT_EQ(defaults.string(Keys::activeProfileID), "my profile");
}

TEST_F(SettingsStoreTest, AnActiveProfileNeedNotExist) {
  const auto unknown = Uuid::random();
  store.persistActiveProfile(unknown);
  EXPECT_EQ(store.load().activeProfileID, unknown);
}

TEST_F(SettingsStoreTest, AMasterGainOfZeroIsHonoured) {
  defaults.set(Keys::masterGain, 0.0);
  EXPECT_EQ(store.load().masterGain, 0.0F);
}

TEST_F(SettingsStoreTest, AMasterGainIsNarrowedAndOtherwiseTakenAsItIs) {
  const auto loaded = [this](double stored) {
    defaults.set(Keys::masterGain, stored);
    return store.load().masterGain;
  };
  constexpr float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(loaded(0.1), 0.1F);
  EXPECT_EQ(loaded(-1.0), -1.0F);
  EXPECT_EQ(loaded(7.0), 7.0F);
  EXPECT_EQ(loaded(1e300), infinity);
  EXPECT_EQ(loaded(-1e300), -infinity);
  EXPECT_TRUE(std::isnan(loaded(std::numeric_limits<double>::quiet_NaN())));
}

TEST_F(SettingsStoreTest, AStoredFalseIsHonouredWhereTheDefaultIsTrue) {
  defaults.set(Keys::pauseOnHeadphoneDisconnect, false);
  EXPECT_FALSE(store.load().pauseOnHeadphoneDisconnect);
}

TEST_F(SettingsStoreTest, OfTwoEntriesForOneApplicationTheFirstStands) {
  store.persistAppsState(
      {{"a", "First", 0.1F, false, {}}, {"b", "B", 1.0F, false, {}}, {"a", "Second", 0.9F, true, {}}});
  const auto apps = store.load().persistedApps;
  EXPECT_EQ(apps.size(), 2U);
  EXPECT_EQ(apps.at("a").name, "First");
  EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SettingsStoreTest, WrongTypesGiveTheDefaultsALogLineAndStayInPlace) {
  markMigrated();
  defaults.set(Keys::profiles, std::string("[]"));
  defaults.set(Keys::activeProfileID, 1.0);
  defaults.set(Keys::masterGain, std::string("0.5"));
  defaults.set(Keys::outputDeviceUID, bytesOf("hdmi"));
  defaults.set(Keys::onboardingCompleted, 1.0);
  defaults.set(Keys::duckRule, true);
  defaults.set(Keys::pauseOnHeadphoneDisconnect, 0.0);
  defaults.set(Keys::focusCandidates, std::string("[]"));
  defaults.set(Keys::appsState, 3.0);
  const auto before = defaults.values();

  const auto snapshot = store.load();
  EXPECT_EQ(snapshot.profiles.at(0).name, "Default");
  EXPECT_FALSE(snapshot.activeProfileID);
  EXPECT_EQ(snapshot.masterGain, 0.7F);
  EXPECT_FALSE(snapshot.outputDeviceUID);
  EXPECT_FALSE(snapshot.hasCompletedOnboarding);
  EXPECT_EQ(snapshot.duckRule, SettingsStore::defaultDuckRule());
  EXPECT_TRUE(snapshot.pauseOnHeadphoneDisconnect);
  EXPECT_THAT(snapshot.focusCandidateBundleIDs, IsEmpty());
  EXPECT_THAT(snapshot.persistedApps, IsEmpty());
  EXPECT_EQ(defaults.values(), before);
  EXPECT_THAT(log.messages(),
              ElementsAre("stored quillmere.profiles ignored: it is a string, not data",
                          "stored quillmere.activeProfileID ignored: it is a double, not a string",
                          "stored quillmere.masterGain ignored: it is a string, not a double",
                          "stored quillmere.outputDeviceUID ignored: it is data, not a string",
                          "stored quillmere.onboardingCompleted ignored: it is a double, not a boolean",
                          "stored quillmere.duckRule ignored: it is a boolean, not data",
                          "stored quillmere.pauseOnHeadphoneDisconnect ignored: it is a double, not a boolean",
                          "stored quillmere.focusCandidates ignored: it is a string, not data",
                          "stored quillmere.appsState ignored: it is a double, not data"));
}

TEST_F(SettingsStoreTest, OneUnreadableProfileLosesTheWholeListUntilTheNextWrite) {
  const std::string damaged =
      R"([{"id":"0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6","name":"Work","apps":[],"updatedAt":1},{"name":"Half"}])";
  storeText(Keys::profiles, damaged);
  const auto snapshot = store.load();
  ASSERT_EQ(snapshot.profiles.size(), 1U);
  EXPECT_EQ(snapshot.profiles[0].name, "Default");
  EXPECT_EQ(storedText(Keys::profiles), damaged);
  EXPECT_EQ(log.count(LogLevel::error, "stored quillmere.profiles ignored: [1].id is missing"), 1);

  store.persistProfiles(snapshot.profiles);
  EXPECT_EQ(store.load().profiles, snapshot.profiles);
}

TEST_F(SettingsStoreTest, DamagedDataCountsAsAbsent) {
  markMigrated();
  storeText(Keys::appsState, R"([{"bundleID":"a","name":"A","gain":0.5,)");
  storeText(Keys::focusCandidates, std::string_view("\0\0\0\0", 4));
  const auto snapshot = store.load();
  EXPECT_THAT(snapshot.persistedApps, IsEmpty());
  EXPECT_THAT(snapshot.focusCandidateBundleIDs, IsEmpty());
  EXPECT_EQ(log.lines().size(), 2U);
}

TEST_F(SettingsStoreTest, AGainThatIsNoNumberKeepsTheOldValueUnderTheKey) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  store.persistAppsState({{"a", "A", 0.5F, false, {}}});
  store.persistDuckRule(ruleWithoutBrowsers());
  defaults.forgetWrites();

  store.persistAppsState({{"a", "A", nan, false, {}}});
  store.persistAppsState({{"a", "A", infinity, false, {}}});
  store.persistDuckRule({{}, {}, nan, 0, 0});
  EXPECT_THAT(defaults.writes(), IsEmpty());
  EXPECT_EQ(log.count(LogLevel::error, "quillmere.appsState not stored: it holds a number that is not finite"), 2);
  EXPECT_EQ(log.count(LogLevel::error, "quillmere.duckRule not stored: it holds a number that is not finite"), 1);
  EXPECT_EQ(store.load().persistedApps.at("a").gain, 0.5F);
}

TEST_F(SettingsStoreTest, GainsOutsideTheRangeAreStoredAsTheyAre) {
  store.persistAppsState({{"a", "A", -1.0F, false, {}}, {"b", "B", 7.0F, false, {}}});
  const auto apps = store.load().persistedApps;
  EXPECT_EQ(apps.at("a").gain, -1.0F);
  EXPECT_EQ(apps.at("b").gain, 7.0F);
}

TEST_F(SettingsStoreTest, AnAppThatIsNotInTheListIsForgotten) {
  store.persistAppsState({{"a", "A", 0.5F, false, {}}, {"b", "B", 0.5F, false, {}}});
  store.persistAppsState({{"b", "B", 0.5F, false, {}}});
  EXPECT_FALSE(store.load().persistedApps.contains("a"));
}

TEST_F(SettingsStoreTest, OddDeviceNamesComeBackAsTheyWere) {
  for (const std::string& uid : {std::string("a \"quoted\" 'device'"), std::string(4096, 'd'), std::string()}) {
    store.persistOutputDevice(uid);
    store.persistAppsState({{"a", uid, 0.5F, false, uid}});
    const auto snapshot = store.load();
    EXPECT_EQ(snapshot.outputDeviceUID, uid);
    EXPECT_EQ(snapshot.persistedApps.at("a").routedDeviceUID, uid);
  }
}

}  // namespace
}  // namespace quillmere
