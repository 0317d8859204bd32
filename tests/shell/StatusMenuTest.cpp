// The status item's menu: titles, order, marks.
#include "shell/StatusMenu.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

Profile profileNamed(const std::string& name) {
  Profile profile;
  profile.id = Uuid::random();
  profile.name = name;
  return profile;
}

std::vector<std::string> titles(const std::vector<StatusMenuEntry>& entries) {
  std::vector<std::string> result;
  for (const auto& entry : entries) result.push_back(entry.action == StatusAction::separator ? "-" : entry.title);
  return result;
}

TEST(StatusMenu, HoldsItsEntriesInOrder) {
  EXPECT_EQ(
      titles(statusMenu({})),
      (std::vector<std::string>{"Open quillmere Window", "-", "Engage Whisper Mode", "Sleep Timer", "Profiles", "-",
                                "Settings…", "About quillmere", "Check for Updates…", "-", "Quit quillmere"}));
}

TEST(StatusMenu, CarriesTheKeyEquivalents) {
  const auto menu = statusMenu({});
  EXPECT_EQ(menu[0].key, "0");
  EXPECT_EQ(menu[6].key, ",");
  EXPECT_EQ(menu[10].key, "q");
}

TEST(StatusMenu, WhisperTitleFollowsTheMode) {
  StatusMenuInput input;
  input.isWhisperMode = true;
  EXPECT_EQ(statusMenu(input)[2].title, "Restore from Whisper Mode");
}

TEST(StatusMenu, SleepTimerOffersFiveLengths) {
  const auto sleep = statusMenu({})[3];
  EXPECT_EQ(titles(sleep.submenu),
            (std::vector<std::string>{"15 minutes", "30 minutes", "45 minutes", "60 minutes", "90 minutes"}));
  EXPECT_EQ(sleep.submenu[4].tag, 90);
  EXPECT_EQ(sleep.submenu[4].action, StatusAction::sleepFor);
}

TEST(StatusMenu, RunningSleepTimerShowsWhatRemainsAndOnlyTheCancelItem) {
  StatusMenuInput input;
  input.now = Date{100.0};
  input.sleepTimerEndsAt = Date{105.0};
  const auto sleep = statusMenu(input)[3];
  EXPECT_EQ(sleep.title, "Sleep Timer · 0:05");
  ASSERT_EQ(sleep.submenu.size(), 1U);
  EXPECT_EQ(sleep.submenu[0].title, "Cancel sleep timer");
  EXPECT_EQ(sleep.submenu[0].action, StatusAction::cancelSleep);
}

TEST(StatusMenu, ANinetyMinuteTimerIsNotCarriedIntoHours) {
  StatusMenuInput input;
  input.sleepTimerEndsAt = Date{90.0 * 60.0};
  EXPECT_EQ(statusMenu(input)[3].title, "Sleep Timer · 90:00");
}

TEST(StatusMenu, WithoutAnActiveProfileNothingIsChecked) {
  StatusMenuInput input;
  input.profiles = {profileNamed("Default"), profileNamed("Work")};
  const auto menu = statusMenu(input);
  ASSERT_EQ(menu[4].submenu.size(), 2U);
  for (const auto& entry : menu[4].submenu) EXPECT_FALSE(entry.isOn);
}

TEST(StatusMenu, TheActiveProfileIsCheckedByIdentityNotByName) {
  StatusMenuInput input;
  input.profiles = {profileNamed("Work"), profileNamed("Work")};
  input.activeProfileID = input.profiles[1].id;
  const auto submenu = statusMenu(input)[4].submenu;
  ASSERT_EQ(submenu.size(), 2U);
  EXPECT_FALSE(submenu[0].isOn);
  EXPECT_TRUE(submenu[1].isOn);
  EXPECT_NE(submenu[0].representedObject, submenu[1].representedObject);
  EXPECT_EQ(submenu[1].representedObject, input.profiles[1].id.text());
}

TEST(StatusMenu, WithNoProfilesTheSubmenuIsEmpty) {
  const auto profiles = statusMenu({})[4];
  EXPECT_TRUE(profiles.hasSubmenu);
  EXPECT_TRUE(profiles.submenu.empty());
}

TEST(StatusMenu, AKnownUpdateChangesTheEntry) {
  StatusMenuInput input;
  input.updateKnown = true;
  EXPECT_EQ(statusMenu(input)[8].title, "Download update…");
}

}  // namespace
}  // namespace quillmere
