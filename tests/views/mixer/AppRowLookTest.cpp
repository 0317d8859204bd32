// Every state of a row, as texts, symbols and colour tokens.
#include "views/mixer/AppRowLook.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

const std::vector<AudioOutputDevice> devices{{"speakers", "Speakers", 1, true}, {"headset", "Headset", 2, false}};

AudioApp app(float gain = 1.0F) { return {"com.example.player", "Player", gain, false, std::nullopt}; }
AudioApp muted() {
  auto result = app();
  result.muted = true;
  return result;
}
AudioApp routed(const std::string& uid) {
  auto result = app();
  result.routedDeviceUID = uid;
  return result;
}

TEST(AppRowLook, PlainLiveApplicationShowsOnlyItsPercentage) {
  const auto look = appRowLook(app(), true, false, devices);
  EXPECT_EQ(look.name, "Player");
  EXPECT_EQ(look.toolTip, "Producing audio right now.");
  EXPECT_TRUE(look.live);
  EXPECT_EQ(look.statusSymbol, "");
  EXPECT_EQ(look.routedDeviceName, "");
  EXPECT_EQ(look.percentColor, "textSecondary");
}

TEST(AppRowLook, SilentApplicationIsTippedWithItsName) {
  EXPECT_EQ(appRowLook(app(), false, false, devices).toolTip, "Player");
}

TEST(AppRowLook, MutedSilentApplicationSaysThatItIsMuted) {
  const auto look = appRowLook(muted(), false, false, devices);
  EXPECT_EQ(look.toolTip, "Player is muted.");
  EXPECT_EQ(look.percentColor, "textTertiary");
}

TEST(AppRowLook, MutedLiveApplicationSaysThatItProducesAudio) {
  EXPECT_EQ(appRowLook(muted(), true, false, devices).toolTip, "Producing audio right now.");
}

TEST(AppRowLook, DuckedComesBeforeEverythingElseInTheTip) {
  EXPECT_EQ(appRowLook(muted(), true, true, devices).toolTip, "Ducked because a call is in progress.");
}

TEST(AppRowLook, DuckedApplicationWearsTheBadgeEvenWhenRouted) {
  EXPECT_EQ(appRowLook(routed("headset"), true, true, devices).statusSymbol, "waveform.badge.minus");
}

TEST(AppRowLook, RoutedApplicationShowsItsDevice) {
  const auto look = appRowLook(routed("headset"), true, false, devices);
  EXPECT_EQ(look.routedDeviceName, "Headset");
  EXPECT_EQ(look.statusSymbol, "headphones");
  EXPECT_EQ(look.routeSymbol, "headphones.circle.fill");
  EXPECT_EQ(look.routeColor, "brandSage");
}

TEST(AppRowLook, VanishedDeviceTakesTheSecondLineButNotTheRoutedLook) {
  const auto look = appRowLook(routed("gone"), true, false, devices);
  EXPECT_EQ(look.routedDeviceName, "");
  EXPECT_EQ(look.statusSymbol, "headphones");
  EXPECT_EQ(look.routeSymbol, "headphones.circle.fill");
}

TEST(AppRowLook, UnroutedApplicationHasThePlainRouteSymbol) {
  const auto look = appRowLook(app(), true, false, devices);
  EXPECT_EQ(look.routeSymbol, "headphones");
  EXPECT_EQ(look.routeColor, "textSecondary");
}

TEST(AppRowLook, MuteButtonIsRedAndStruckWhileMuted) {
  const auto look = appRowLook(muted(), true, false, devices);
  EXPECT_EQ(look.muteSymbol, "speaker.slash.fill");
  EXPECT_EQ(look.muteColor, "brandRed");
  EXPECT_EQ(look.muteTip, "Unmute");
}

TEST(AppRowLook, MuteButtonIsPlainWhileNotMuted) {
  const auto look = appRowLook(app(), true, false, devices);
  EXPECT_EQ(look.muteSymbol, "speaker.wave.2");
  EXPECT_EQ(look.muteColor, "textSecondary");
  EXPECT_EQ(look.muteTip, "Mute");
}

}  // namespace
}  // namespace quillmere
