// The menus of a program with one menu bar.
#include "windows/ProgramMenu.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <string>
#include <vector>

namespace quillmere {
namespace {

class MenuOfTheProgram : public ::testing::Test {
 protected:
  QAction* entry(const QString& title) {
    for (auto* each : menu.bar().findChildren<QMenu*>()) {
      for (auto* action : each->actions()) {
        if (action->text() == title) return action;
      }
    }
    return nullptr;
  }

  std::vector<std::string> done;
  ProgramMenu menu{{[this] { done.emplace_back("about"); }, [this] { done.emplace_back("window"); },
                    [this] { done.emplace_back("settings"); }}};
};

TEST_F(MenuOfTheProgram, OpensTheMainWindowWithTheCommandKeyAndNought) {
  auto* action = entry("quillmere Window");
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_0));
  action->trigger();
  EXPECT_EQ(done, std::vector<std::string>{"window"});
}

TEST_F(MenuOfTheProgram, GivesTheSystemItsAboutEntryWithoutAKey) {
  auto* action = entry("About quillmere");
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->menuRole(), QAction::AboutRole);
  EXPECT_TRUE(action->shortcut().isEmpty());
  action->trigger();
  EXPECT_EQ(done, std::vector<std::string>{"about"});
}

TEST_F(MenuOfTheProgram, GivesTheSystemItsSettingsEntry) {
  auto* action = entry("Settings…");
  ASSERT_NE(action, nullptr);
  EXPECT_EQ(action->menuRole(), QAction::PreferencesRole);
  action->trigger();
  EXPECT_EQ(done, std::vector<std::string>{"settings"});
}

TEST_F(MenuOfTheProgram, BelongsToNoWindow) { EXPECT_EQ(menu.bar().parent(), nullptr); }

}  // namespace
}  // namespace quillmere
