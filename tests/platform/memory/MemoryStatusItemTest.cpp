// The status item without a panel.
#include "platform/memory/MemoryStatusItem.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

std::vector<StatusMenuItem> menu() {
  StatusMenuItem quit;
  quit.id = 1;
  quit.title = "Quit";
  StatusMenuItem evening;
  evening.id = 3;
  evening.title = "Evening";
  StatusMenuItem profiles;
  profiles.id = 2;
  profiles.kind = StatusMenuItem::Kind::submenu;
  profiles.title = "Profiles";
  profiles.children = {evening};
  return {quit, profiles};
}

TEST(MemoryStatusItem, AvailabilityIsToldTheFirstTimeAndThenWhenItChanges) {
  MemoryStatusItem item;
  std::vector<bool> told;
  item.onAvailabilityChanged([&](bool isAvailable) { told.push_back(isAvailable); });
  EXPECT_FALSE(item.isAvailable());
  for (const bool next : {false, false, true, true, false}) item.setAvailable(next);
  EXPECT_EQ(told, (std::vector{false, true, false}));
}

TEST(MemoryStatusItem, AnEntryOfASubmenuIsChosenByItsTitle) {
  MemoryStatusItem item;
  std::vector<int> chosen;
  item.onMenuItemChosen([&](int id, const std::string&) { chosen.push_back(id); });
  item.onMenuAboutToShow([&] { item.setMenu(menu()); });
  EXPECT_TRUE(item.choose("Evening"));
  EXPECT_FALSE(item.choose("Profiles")) << "a submenu only opens";
  EXPECT_FALSE(item.choose("Morning"));
  EXPECT_EQ(chosen, std::vector{3});
}

TEST(MemoryStatusItem, TheSameMenuAgainIsNoChange) {
  MemoryStatusItem item;
  item.setMenu(menu());
  item.setMenu(menu());
  EXPECT_EQ(item.menuChanges(), 1);
}

}  // namespace
}  // namespace quillmere
