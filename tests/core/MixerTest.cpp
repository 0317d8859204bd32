// Gain arithmetic and the application of profiles.
#include "core/Mixer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace quillmere {
namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

Profile profileOf(std::vector<AudioApp> apps) { return {Uuid::random(), "Saved", std::move(apps), {}, Date{1.0}}; }

TEST(ClampGain, KeepsWhatIsInRange) {
  EXPECT_EQ(Mixer{}.clampGain(0.25F), 0.25F);
  EXPECT_EQ(Mixer{}.clampGain(0.0F), 0.0F);
  EXPECT_EQ(Mixer{}.clampGain(1.0F), 1.0F);
}

TEST(ClampGain, LimitsToZeroAndOne) {
  EXPECT_EQ(Mixer{}.clampGain(-1.0F), 0.0F);
  EXPECT_EQ(Mixer{}.clampGain(1.5F), 1.0F);
  EXPECT_EQ(Mixer{}.clampGain(7.0F), 1.0F);
  EXPECT_EQ(Mixer{}.clampGain(infinity), 1.0F);
  EXPECT_EQ(Mixer{}.clampGain(-infinity), 0.0F);
}

TEST(ClampGain, NaNIsFullGainNotSilence) { EXPECT_EQ(Mixer{}.clampGain(nan), 1.0F); }

TEST(ClampGain, MinusZeroPassesUnchanged) {
  const float clamped = Mixer{}.clampGain(-0.0F);
  EXPECT_EQ(clamped, 0.0F);
  EXPECT_TRUE(std::signbit(clamped));
}

TEST(EqualPowerFade, AtTheStartItIsExactlyFrom) {
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, 0.0F), 0.37F);
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, -3.0F), 0.37F);
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, -infinity), 0.37F);
}

TEST(EqualPowerFade, PastTheEndAndForNaNItIsTheEnd) {
  const float end = Mixer{}.equalPowerFade(0.37F, 0.81F, 1.0F);
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, 7.0F), end);
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, nan), end);
  EXPECT_EQ(Mixer{}.equalPowerFade(0.37F, 0.81F, infinity), end);
  EXPECT_NEAR(end, 0.81F, 1e-6F);
}

TEST(EqualPowerFade, TheEndKeepsAResidueOfFrom) {
  const float residue = Mixer{}.equalPowerFade(1.0F, 0.0F, 1.0F);
  EXPECT_EQ(residue, std::cos(std::bit_cast<float>(std::uint32_t{0x3FC90FDA})));
  EXPECT_GT(residue, 5e-8F);
  EXPECT_LT(residue, 5e-7F);
}

TEST(EqualPowerFade, BelowTheEndTheAngleIsTheProductOfTheAlmostPi) {
  const float angle = 0.7F * std::bit_cast<float>(std::uint32_t{0x40490FDA}) * 0.5F;
  EXPECT_EQ(Mixer{}.equalPowerFade(0.9F, 0.2F, 0.7F), 0.9F * std::cos(angle) + 0.2F * std::sin(angle));
}

TEST(EqualPowerFade, KeepsPowerNotAmplitude) { EXPECT_NEAR(Mixer{}.equalPowerFade(1.0F, 1.0F, 0.5F), 1.414F, 0.001F); }

TEST(ApplyProfile, TakesGainMuteAndRouteFromTheProfileAndTheNameFromTheList) {
  const auto profile = profileOf({{"a", "Old name", 0.25F, true, "usb"}});
  const auto result = Mixer{}.apply(profile, {{"a", "New name", 1.0F, false, {}}});
  EXPECT_EQ(result, (std::vector<AudioApp>{{"a", "New name", 0.25F, true, "usb"}}));
}

TEST(ApplyProfile, AnAbsentRouteInTheProfileClearsTheRoute) {
  const auto result = Mixer{}.apply(profileOf({{"a", "A", 1.0F, false, {}}}), {{"a", "A", 0.5F, true, "usb"}});
  EXPECT_EQ(result, (std::vector<AudioApp>{{"a", "A", 1.0F, false, {}}}));
}

TEST(ApplyProfile, AnEmptyProfileChangesNothing) {
  const std::vector<AudioApp> apps{{"b", "B", 0.5F, true, "usb"}, {"a", "A", 1.0F, false, {}}};
  EXPECT_EQ(Mixer{}.apply(profileOf({}), apps), apps);
}

TEST(ApplyProfile, KeepsLengthAndOrderOfTheList) {
  const std::vector<AudioApp> apps{
      {"c", "C", 1.0F, false, {}}, {"a", "A", 1.0F, false, {}}, {"b", "B", 1.0F, false, {}}};
  const auto result = Mixer{}.apply(profileOf({{"a", "", 0.1F, false, {}}, {"gone", "", 0.2F, false, {}}}), apps);
  ASSERT_EQ(result.size(), 3U);
  EXPECT_EQ(result[0], apps[0]);
  EXPECT_EQ(result[1].gain, 0.1F);
  EXPECT_EQ(result[2], apps[2]);
}

TEST(ApplyProfile, AnEmptyListStaysEmpty) {
  EXPECT_TRUE(Mixer{}.apply(profileOf({{"a", "A", 0.1F, false, {}}}), {}).empty());
}

TEST(ApplyProfile, AListMayHoldAnApplicationTwice) {
  const auto result = Mixer{}.apply(profileOf({{"a", "", 0.1F, false, {}}}),
                                    {{"a", "One", 1.0F, false, {}}, {"a", "Two", 1.0F, false, {}}});
  EXPECT_EQ(result[0].gain, 0.1F);
  EXPECT_EQ(result[1].gain, 0.1F);
}

TEST(ApplyProfileDeathTest, ADuplicateKeyStopsTheProcessAndIsNamed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto profile = profileOf({{"com.twice", "A", 1.0F, false, {}}, {"com.twice", "B", 0.5F, false, {}}});
  EXPECT_DEATH(static_cast<void>(Mixer{}.apply(profile, {})), "com\\.twice");
}

}  // namespace
}  // namespace quillmere
