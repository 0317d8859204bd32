// What a desktop's settings say of how programs should look, from a portal and from files of the test's own.
#include "platform/linux/LinuxDesktopLook.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/linux/look/LookFact.h"
#include "platform/linux/portal/Portal.h"
#include "runtime/Clocks.h"
#include "runtime/ThreadPoolExecutor.h"
#include "support/FakeDesktop.h"
#include "support/PostBox.h"
#include "support/PrivateBus.h"
#include "support/RecordingLogSink.h"
#include "support/TemporaryFolder.h"

namespace quillmere {
namespace {

class DesktopWishes : public ::testing::Test {
 protected:
  /// Looks as a program on a desktop of this name does.
  void look(const std::string& name = "GNOME") {
    wishes.emplace(portal, runtime, LinuxDesktopLookOptions{folder.path(), std::vector<std::string>{name}});
    wishes->onWished([this](const LookWishes& now) {
      told = now;
      ++times;
    });
  }
  bool comesTo(const LookWishes& expected) {
    return main.becomes([&] { return told == expected; });
  }
  /// By now everything that was there to be read has been: what comes later was asked for later.
  void waitForTheLook() {
    bool isRead = false;
    background.post([&] { main.post([&] { isRead = true; }); });
    ASSERT_TRUE(main.becomes([&] { return isRead; }));
  }

  support::PrivateBus bus;
  support::FakeDesktop desktop{bus.address()};
  support::TemporaryFolder folder;
  support::PostBox main;
  ThreadPoolExecutor background{1};
  SystemClocks clocks;
  support::RecordingLogSink log;
  Runtime runtime{main, background, clocks, log, makeThreadSerialQueue};
  std::shared_ptr<portal::Portal> portal = std::make_shared<portal::Portal>(bus.address());
  std::optional<LinuxDesktopLook> wishes;
  LookWishes told;
  int times = 0;
};

TEST_F(DesktopWishes, ThePortalTellsOfReducedMotionAndContrast) {
  desktop.comeAsPortal();
  desktop.setSettings("{'org.freedesktop.appearance': {'contrast': <uint32 1>, 'reduced-motion': <uint32 1>}}");
  look();
  EXPECT_TRUE(comesTo({true, true}));
}

TEST_F(DesktopWishes, AnimationsThatAreSwitchedOffAreReducedMotion) {
  desktop.comeAsPortal();
  desktop.setSettings(
      "{'org.gnome.desktop.interface': {'enable-animations': <false>, 'gtk-theme': <'Adwaita'>},"
      " 'org.gnome.desktop.a11y.interface': {'high-contrast': <false>}}");
  look();
  EXPECT_TRUE(comesTo({true, false}));
}

TEST_F(DesktopWishes, AThemeOfHighContrastIsContrast) {
  desktop.comeAsPortal();
  desktop.setSettings(
      "{'org.gnome.desktop.interface': {'enable-animations': <true>, 'gtk-theme': <'HighContrastInverse'>}}");
  look();
  EXPECT_TRUE(comesTo({false, true}));
}

TEST_F(DesktopWishes, AChangeIsToldAtOnceAndGoesBackToo) {
  desktop.comeAsPortal();
  desktop.setSettings("{'org.gnome.desktop.a11y.interface': {'high-contrast': <true>}}");
  look();
  ASSERT_TRUE(comesTo({false, true}));
  desktop.changeSetting("org.gnome.desktop.interface", "enable-animations", "false");
  EXPECT_TRUE(comesTo({true, true}));
  desktop.changeSetting("org.gnome.desktop.a11y.interface", "high-contrast", "false");
  EXPECT_TRUE(comesTo({true, false}));
  desktop.changeSetting("org.gnome.desktop.interface", "enable-animations", "true");
  EXPECT_TRUE(comesTo({false, false}));
}

TEST_F(DesktopWishes, WhatIsNotMeantForThisOrIsOfAnotherTypeSaysNothing) {
  desktop.comeAsPortal();
  desktop.setSettings(
      "{'org.freedesktop.appearance': {'contrast': <'1'>, 'color-scheme': <uint32 1>, 'reduced-motion': <uint32 1>},"
      " 'org.gnome.desktop.a11y.interface': {'high-contrast': <1>}}");
  look();
  ASSERT_TRUE(comesTo({true, false}));
  desktop.changeSetting("org.freedesktop.appearance", "color-scheme", "uint32 2");
  desktop.changeSetting("org.freedesktop.appearance", "contrast", "true");
  desktop.changeSetting("org.freedesktop.appearance", "reduced-motion", "uint32 0");
  ASSERT_TRUE(comesTo({false, false}));
  EXPECT_EQ(times, 2);
}

TEST_F(DesktopWishes, WithoutAPortalTheToolkitsFilesTell) {
  folder.write("gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=0\ngtk-theme-name=HighContrast\n");
  look("XFCE");
  EXPECT_TRUE(comesTo({true, true}));
}

TEST_F(DesktopWishes, PlasmaHasAFileOfItsOwn) {
  folder.write("kdeglobals", "[General]\nColorScheme=BreezeHighContrast\n[KDE]\nAnimationDurationFactor=0\n");
  look("KDE");
  EXPECT_TRUE(comesTo({true, true}));
}

TEST_F(DesktopWishes, AnotherDesktopsFileDoesNotCount) {
  folder.write("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
  folder.write("gtk-4.0/settings.ini", "[Settings]\ngtk-enable-animations=true\n");
  look("XFCE");
  waitForTheLook();
  EXPECT_EQ(times, 0);
}

TEST_F(DesktopWishes, WhatOneSourceWishesNoDefaultOfAnotherTakesBack) {
  folder.write("kdeglobals", "[KDE]\nAnimationDurationFactor=0.0\n");
  desktop.comeAsPortal();
  desktop.setSettings(
      "{'org.freedesktop.appearance': {'contrast': <uint32 1>}, 'org.gnome.desktop.interface': {'enable-animations': "
      "<true>}}");
  look("KDE");
  EXPECT_TRUE(comesTo({true, true}));
}

TEST_F(DesktopWishes, FilesThatAreNoneSayNothing) {
  folder.write("gtk-3.0/settings.ini", std::string(2'000'000, 'x'));
  folder.write("gtk-4.0/settings.ini", "gtk-enable-animations=0\n[broken");
  folder.write("kdeglobals", "[KDE]\nAnimationDurationFactor=slow\n");
  look("KDE");
  waitForTheLook();
  EXPECT_EQ(times, 0);
}

TEST_F(DesktopWishes, WithoutABusNothingIsWished) {
  bus.stop();
  look();
  waitForTheLook();
  EXPECT_EQ(times, 0);
}

TEST_F(DesktopWishes, WhoHasGoneIsToldNothing) {
  folder.write("gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n");
  look();
  wishes.reset();
  waitForTheLook();
  EXPECT_EQ(times, 0);
}

TEST(LookFact, BoxesAroundAValueAreOpened) {
  const bus::Variant boxed(g_variant_ref_sink(g_variant_new_parsed("<<uint32 1>>")));
  EXPECT_EQ(look::factOf("org.freedesktop.appearance", "contrast", boxed.get()),
            (look::Fact{"org.freedesktop.appearance/contrast", look::Wish::contrast, true}));
}

}  // namespace
}  // namespace quillmere
