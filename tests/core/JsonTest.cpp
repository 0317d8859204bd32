// The stored JSON forms: to the letter in writing, strict in reading.
#include "core/Json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

namespace quillmere::json {
namespace {

using testing::HasSubstr;

AudioApp sampleApp() { return {"com.spotify.client", "Spotify", 0.3F, true, "usb-headset"}; }

Profile sampleProfile() {
  return {
      *Uuid::parse("0f9e2a47-1b3c-4d5e-8f60-718293a4b5c6"), "Work", {sampleApp()}, "focus.work", Date{700000000.25}};
}

DuckRule sampleRule() { return {{"us.zoom.xos"}, {"com.spotify.client"}, 0.3F, 300, 1500}; }

AudioApp appWithGain(float gain) { return {"a", "A", gain, false, {}}; }

std::string gainText(float gain) {
  const auto text = encode(appWithGain(gain)).value();
  const auto start = text.find("\"gain\":") + 7;
  return text.substr(start, text.find(',', start) - start);
}

std::optional<AudioApp> readWithGain(const std::string& digits, std::string* problem = nullptr) {
  return decodeAudioApp(R"({"bundleID":"a","name":"A","gain":)" + digits + R"(,"muted":false})", problem);
}

std::optional<DuckRule> readWithFade(const std::string& digits) {
  return decodeDuckRule(R"({"triggerBundleIDs":[],"duckedBundleIDs":[],"targetGain":0.3,"fadeMillis":)" + digits +
                        R"(,"restoreDelayMillis":1500})");
}

// Writing.

TEST(Encode, ADuckRuleIsWrittenToTheLetter) {
  EXPECT_EQ(encode(sampleRule()),
            R"({"triggerBundleIDs":["us.zoom.xos"],"duckedBundleIDs":["com.spotify.client"],"targetGain":0.3,)"
            R"("fadeMillis":300,"restoreDelayMillis":1500})");
}

TEST(Encode, AnAppIsWrittenToTheLetter) {
  EXPECT_EQ(
      encode(sampleApp()),
      R"({"bundleID":"com.spotify.client","name":"Spotify","gain":0.3,"muted":true,"routedDeviceUID":"usb-headset"})");
}

TEST(Encode, AProfileIsWrittenToTheLetter) {
  auto profile = sampleProfile();
  profile.apps.clear();
  EXPECT_EQ(encode(profile),
            R"({"id":"0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6","name":"Work","apps":[],"focusModeID":"focus.work",)"
            R"("updatedAt":700000000.25})");
}

TEST(Encode, AbsentOptionalsAreLeftOutNeverNull) {
  auto app = sampleApp();
  app.routedDeviceUID.reset();
  EXPECT_EQ(encode(app), R"({"bundleID":"com.spotify.client","name":"Spotify","gain":0.3,"muted":true})");
  auto profile = sampleProfile();
  profile.focusModeID.reset();
  EXPECT_FALSE(nlohmann::json::parse(*encode(profile)).contains("focusModeID"));
}

TEST(Encode, FloatsHaveTheirShortestText) {
  EXPECT_EQ(gainText(0.3F), "0.3");
  EXPECT_EQ(gainText(1.0F), "1");
  EXPECT_EQ(gainText(0.0F), "0");
  EXPECT_EQ(gainText(0.1F), "0.1");
  EXPECT_EQ(gainText(0.7F), "0.7");
  EXPECT_EQ(gainText(std::nextafter(0.3F, 1.0F)), "0.30000004");
}

TEST(Encode, MinusZeroKeepsItsSign) {
  const auto read = decodeAudioApp(*encode(appWithGain(-0.0F)));
  ASSERT_TRUE(read);
  EXPECT_TRUE(std::signbit(read->gain));
}

TEST(Encode, NumbersThatAreNotFiniteHaveNoForm) {
  for (const float gain : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity()}) {
    EXPECT_FALSE(encode(appWithGain(gain)));
    EXPECT_FALSE(encode(std::vector<AudioApp>{appWithGain(1.0F), appWithGain(gain)}));
    auto rule = sampleRule();
    rule.targetGain = gain;
    EXPECT_FALSE(encode(rule));
    auto profile = sampleProfile();
    profile.updatedAt = Date{static_cast<double>(gain)};
    EXPECT_FALSE(encode(profile));
  }
}

TEST(Encode, GainsOutsideTheRangeAreKept) {
  EXPECT_EQ(gainText(-1.0F), "-1");
  EXPECT_EQ(gainText(7.0F), "7");
}

TEST(Encode, EmptyListsAndSets) {
  EXPECT_EQ(encode(std::vector<AudioApp>{}), "[]");
  EXPECT_EQ(encode(std::vector<Profile>{}), "[]");
  EXPECT_EQ(encode(std::vector<std::string>{}), "[]");
  EXPECT_EQ(encode(DuckRule{}),
            R"({"triggerBundleIDs":[],"duckedBundleIDs":[],"targetGain":0,"fadeMillis":0,"restoreDelayMillis":0})");
}

TEST(Encode, TextsAreEscapedAndComeBack) {
  const std::vector<std::string> texts{"quote \" backslash \\ slash /", std::string("nul \0 tab \t line \n", 17),
                                       "漢字 😀 é", std::string(4096, 'x'), ""};
  EXPECT_EQ(decodeTexts(*encode(texts)), texts);
}

TEST(Encode, BrokenUtf8IsReplacedAndDoesNotSpoilTheRest) {
  const auto text = encode(std::vector<AudioApp>{{"a", "bad \xFF name", 0.5F, false, {}}});
  ASSERT_TRUE(text);
  EXPECT_EQ(decodeAudioApps(*text), (std::vector<AudioApp>{{"a", "bad \uFFFD name", 0.5F, false, {}}}));
}

// Reading back what was written.

TEST(RoundTrip, EveryRecordComesBackEqual) {
  EXPECT_EQ(decodeAudioApp(*encode(sampleApp())), sampleApp());
  EXPECT_EQ(decodeProfile(*encode(sampleProfile())), sampleProfile());
  EXPECT_EQ(decodeDuckRule(*encode(sampleRule())), sampleRule());
  const std::vector<AudioApp> apps{sampleApp(), appWithGain(0.1F)};
  EXPECT_EQ(decodeAudioApps(*encode(apps)), apps);
  const std::vector<Profile> profiles{sampleProfile(), sampleProfile()};
  EXPECT_EQ(decodeProfiles(*encode(profiles)), profiles);
}

TEST(RoundTrip, EveryFloatComesBackToTheLastBit) {
  constexpr unsigned seed = 7;
  std::mt19937 random(seed);
  for (int count = 0; count < 200000; ++count) {
    const auto bits = static_cast<std::uint32_t>(random());
    const auto gain = std::bit_cast<float>(bits);
    if (!std::isfinite(gain)) continue;
    const auto read = readWithGain(gainText(gain));
    ASSERT_TRUE(read) << bits << " seed " << seed;
    ASSERT_EQ(std::bit_cast<std::uint32_t>(read->gain), bits) << "seed " << seed;
  }
}

TEST(RoundTrip, EveryDateComesBackToTheLastBit) {
  constexpr unsigned seed = 8;
  std::mt19937_64 random(seed);
  auto profile = sampleProfile();
  for (int count = 0; count < 20000; ++count) {
    const auto seconds = std::bit_cast<double>(random());
    if (!std::isfinite(seconds)) continue;
    profile.updatedAt = Date{seconds};
    const auto read = decodeProfile(*encode(profile));
    ASSERT_TRUE(read) << seconds << " seed " << seed;
    ASSERT_EQ(read->updatedAt, profile.updatedAt) << "seed " << seed;
  }
}

TEST(RoundTrip, IntegersOfAllSixtyFourBits) {
  auto rule = sampleRule();
  rule.fadeMillis = std::numeric_limits<std::int64_t>::min();
  rule.restoreDelayMillis = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(decodeDuckRule(*encode(rule)), rule);
}

// Reading.

TEST(Decode, AnAppWithoutRouteOrWithNullReadsTheSame) {
  const auto without = decodeAudioApp(R"({"bundleID":"a","name":"A","gain":0.5,"muted":false})");
  const auto null = decodeAudioApp(R"({"bundleID":"a","name":"A","gain":0.5,"muted":false,"routedDeviceUID":null})");
  ASSERT_TRUE(without);
  EXPECT_EQ(*without, (AudioApp{"a", "A", 0.5F, false, {}}));
  EXPECT_EQ(without, null);
}

TEST(Decode, AProfileWithoutFocusModeReads) {
  const auto profile =
      decodeProfile(R"({"id":"0f9e2a47-1b3c-4d5e-8f60-718293a4b5c6","name":"Work","apps":[],"updatedAt":12.5})");
  ASSERT_TRUE(profile);
  EXPECT_FALSE(profile->focusModeID);
  EXPECT_EQ(profile->updatedAt, Date{12.5});
}

TEST(Decode, AProfileWithoutDateFails) {
  std::string problem;
  EXPECT_FALSE(decodeProfile(R"({"id":"0F9E2A47-1B3C-4D5E-8F60-718293A4B5C6","name":"Work","apps":[]})", &problem));
  EXPECT_EQ(problem, "updatedAt is missing");
}

/// Drops or replaces each key of a valid object in turn.
template <typename Decoder>
void expectEachKeyRequired(const std::string& valid, const std::set<std::string>& optionals, Decoder decode) {
  const auto object = nlohmann::json::parse(valid);
  ASSERT_TRUE(decode(valid));
  for (const auto& [key, value] : object.items()) {
    auto without = object;
    without.erase(key);
    EXPECT_EQ(decode(without.dump()), optionals.contains(key)) << "without " << key;
    auto null = object;
    null[key] = nullptr;
    EXPECT_EQ(decode(null.dump()), optionals.contains(key)) << "null for " << key;
    for (const char* other : {"true", "12", "12.5", "\"text\"", "[]", "{}", "[1]", "[null]"}) {
      auto wrong = object;
      wrong[key] = nlohmann::json::parse(other);
      const bool isNumberForNumber = wrong[key].is_number() && value.is_number();
      if (isNumberForNumber || (wrong[key].type() == value.type() && wrong[key] != nlohmann::json::parse("[1]") &&
                                wrong[key] != nlohmann::json::parse("[null]"))) {
        continue;
      }
      EXPECT_FALSE(decode(wrong.dump())) << other << " for " << key;
    }
  }
}

TEST(Decode, EveryKeyOfAnAppIsRequiredWithItsType) {
  expectEachKeyRequired(*encode(sampleApp()), {"routedDeviceUID"},
                        [](const std::string& text) { return decodeAudioApp(text).has_value(); });
}

TEST(Decode, EveryKeyOfAProfileIsRequiredWithItsType) {
  expectEachKeyRequired(*encode(sampleProfile()), {"focusModeID"},
                        [](const std::string& text) { return decodeProfile(text).has_value(); });
}

TEST(Decode, EveryKeyOfADuckRuleIsRequiredWithItsType) {
  expectEachKeyRequired(*encode(sampleRule()), {},
                        [](const std::string& text) { return decodeDuckRule(text).has_value(); });
}

TEST(Decode, AnIdThatIsNoUuidFails) {
  std::string problem;
  EXPECT_FALSE(decodeProfile(R"({"id":"text","name":"Work","apps":[],"updatedAt":1})", &problem));
  EXPECT_EQ(problem, "id is not a UUID");
}

TEST(Decode, WholeNumbersMayBeWrittenInAnyWay) {
  EXPECT_EQ(readWithFade("300")->fadeMillis, 300);
  EXPECT_EQ(readWithFade("300.0")->fadeMillis, 300);
  EXPECT_EQ(readWithFade("3e2")->fadeMillis, 300);
  EXPECT_EQ(readWithFade("-5")->fadeMillis, -5);
}

TEST(Decode, ANumberThatIsNotWholeOrTooLargeFailsAsAnInteger) {
  for (const char* digits :
       {"300.5", "1e-3", "9223372036854775808", "-9223372036854775809", "1e300", "\"300\"", "true"}) {
    EXPECT_FALSE(readWithFade(digits)) << digits;
  }
}

TEST(Decode, FloatsAreRoundedOnceNotTwice) {
  // Just above the middle between 1 and the next float; a double holds the middle itself, which would round to 1.
  EXPECT_EQ(readWithGain("1.00000005960464477540")->gain, std::nextafter(1.0F, 2.0F));
  EXPECT_EQ(readWithGain("16777217")->gain, 16777216.0F);
}

TEST(Decode, FloatsAtTheEndsOfTheRange) {
  EXPECT_EQ(readWithGain("1e-60")->gain, 0.0F);
  EXPECT_TRUE(std::signbit(readWithGain("-1e-60")->gain));
  std::string problem;
  EXPECT_FALSE(readWithGain("1e39", &problem));
  EXPECT_EQ(problem, "gain is too large");
  EXPECT_FALSE(readWithGain("1e400"));
  EXPECT_FALSE(readWithGain("NaN"));
  EXPECT_FALSE(readWithGain("Infinity"));
}

TEST(Decode, GainsOutsideTheRangeAreTakenAsTheyAre) {
  EXPECT_EQ(readWithGain("-1")->gain, -1.0F);
  EXPECT_EQ(readWithGain("7")->gain, 7.0F);
}

TEST(Decode, UnknownKeysAreIgnored) {
  EXPECT_TRUE(decodeAudioApp(
      R"({"bundleID":"a","name":"A","gain":1,"muted":false,"version":3,"more":{"deep":[1,{"x":null}]}})"));
}

TEST(Decode, OfTwoEqualKeysTheLaterCounts) {
  EXPECT_EQ(decodeAudioApp(R"({"bundleID":"a","name":"A","gain":1,"gain":0.5,"muted":false})")->gain, 0.5F);
}

TEST(Decode, DuplicatesInASetAreFine) {
  const auto rule = decodeDuckRule(
      R"({"triggerBundleIDs":["a","b","a"],"duckedBundleIDs":[],"targetGain":0,"fadeMillis":0,"restoreDelayMillis":0})");
  ASSERT_TRUE(rule);
  EXPECT_EQ(rule->triggerBundleIDs, (std::set<std::string>{"a", "b"}));
}

TEST(Decode, OneBadElementMakesTheWholeListUnreadable) {
  const std::string good = *encode(sampleApp());
  ASSERT_TRUE(decodeAudioApps("[" + good + "," + good + "]"));
  std::string problem;
  EXPECT_FALSE(decodeAudioApps("[" + good + R"(,{"bundleID":"a","name":"A","gain":"loud","muted":false}])", &problem));
  EXPECT_EQ(problem, "[1].gain is a text, not a number");
  EXPECT_FALSE(decodeTexts(R"(["a",1])", &problem));
  EXPECT_EQ(problem, "[1] is a number, not a text");
}

TEST(Decode, TheProblemNamesTheInnermostPlace) {
  auto profiles = nlohmann::json::parse(*encode(std::vector<Profile>{sampleProfile(), sampleProfile()}));
  profiles[1]["apps"][0].erase("muted");
  std::string problem;
  EXPECT_FALSE(decodeProfiles(profiles.dump(), &problem));
  EXPECT_EQ(problem, "[1].apps[0].muted is missing");
}

TEST(Decode, WhatIsNotJsonFails) {
  std::string problem;
  for (const std::string& text :
       std::vector<std::string>{"", " ", "[", "[]]", "[],", "{", "nul", "[1,]", "'a'", "[\"\xFF\"]", R"(["\ud800"])",
                                "// x\n[]", std::string("[]\0", 3)}) {
    problem.clear();
    EXPECT_FALSE(decodeTexts(text, &problem)) << text;
    EXPECT_THAT(problem, HasSubstr("not JSON")) << text;
  }
  EXPECT_FALSE(decodeTexts("{}", &problem));
  EXPECT_EQ(problem, "the value is an object, not a list");
}

TEST(Decode, AbsurdNestingFailsAndDoesNotExhaustTheStack) {
  std::string problem;
  EXPECT_FALSE(decodeTexts(std::string(1000000, '['), &problem));
  EXPECT_EQ(problem, "nested too deeply");
}

// Random damage.

/// One random change to a text: a byte replaced, dropped or doubled, a stretch cut or repeated, a token swapped in.
std::string mutated(std::string text, std::mt19937& random) {
  static const std::vector<std::string> tokens{"null", "true", "-", "1e999", "\"",  "\\u",  "[",     "]",
                                               "{",    "}",    ":", ",",     "0.5", "\xFF", "\"id\""};
  const auto changes = 1 + random() % 3;
  for (unsigned change = 0; change < changes && !text.empty(); ++change) {
    const auto at = random() % text.size();
    const auto length = 1 + random() % 12;
    switch (random() % 5) {
      case 0:
        text[at] = static_cast<char>(random() % 256);
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        text.insert(at, text.substr(at, length));
        break;
      case 3:
        text.insert(at, tokens[random() % tokens.size()]);
        break;
      default:
        text.resize(at);
        break;
    }
  }
  return text;
}

/// Whatever is done to a stored text, reading answers with a whole value or none, and a whole value can be stored again
/// and then reads as itself.
template <typename Value, typename Decoder>
void expectAllOrNothing(const Value& value, Decoder decode) {
  constexpr unsigned seed = 42;
  std::mt19937 random(seed);
  const auto valid = encode(value).value();
  int readable = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto text = mutated(valid, random);
    std::string problem;
    const auto read = decode(text, &problem);
    EXPECT_EQ(read.has_value(), problem.empty()) << text << " round " << round << " seed " << seed;
    if (!read) continue;
    ++readable;
    const auto again = encode(*read);
    ASSERT_TRUE(again) << text << " round " << round << " seed " << seed;
    EXPECT_EQ(decode(*again, nullptr), read) << text << " round " << round << " seed " << seed;
  }
  // Both outcomes were really tried.
  EXPECT_GT(readable, 100);
  EXPECT_LT(readable, 19000);
}

TEST(DecodeOfDamagedText, AppsAreReadWholeOrNotAtAll) {
  expectAllOrNothing(std::vector<AudioApp>{sampleApp(), appWithGain(0.25F)}, decodeAudioApps);
}

TEST(DecodeOfDamagedText, ProfilesAreReadWholeOrNotAtAll) {
  expectAllOrNothing(std::vector<Profile>{sampleProfile(), sampleProfile()}, decodeProfiles);
}

TEST(DecodeOfDamagedText, ADuckRuleIsReadWholeOrNotAtAll) { expectAllOrNothing(sampleRule(), decodeDuckRule); }

TEST(DecodeOfDamagedText, TextsAreReadWholeOrNotAtAll) {
  expectAllOrNothing(std::vector<std::string>{"one", "twö", "thr\"ee"}, decodeTexts);
}

}  // namespace
}  // namespace quillmere::json
