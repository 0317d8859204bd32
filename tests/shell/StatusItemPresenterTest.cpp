// The icon's menu follows the state, and its clicks reach it.
#include "shell/StatusItemPresenter.h"

#include <gtest/gtest.h>

#include <set>

#include "StartedState.h"
#include "platform/memory/MemoryStatusItem.h"
#include "platform/memory/MemoryWindowSystem.h"
#include "shell/StatusBarController.h"

namespace quillmere {
namespace {

class Icon : public StartedState {
 protected:
  Icon() {
    controller.observeMenu([this] { presenter.refresh(); });
    presenter.show();
  }
  StatusBarIntents intents() {
    StatusBarIntents result;
    result.openMainWindow = [this](const ActivationRequest& request) {
      opened.push_back(request.section.value_or("none") + "/" + request.activationToken);
    };
    result.togglePopover = [this](const StatusItemActivation& activation) { clicks.push_back(activation); };
    return result;
  }
  [[nodiscard]] int idOf(const std::string& title) const { return item.find(title)->id; }

  MemoryWindowSystem windows{{"main"}};
  std::vector<std::string> opened;
  std::vector<StatusItemActivation> clicks;
  MemoryStatusItem item;
  StatusBarController controller{state(), box->runtime, windows, intents()};
  StatusItemPresenter presenter{item, controller};
};

TEST_F(Icon, IsShownWithItsToolTipAndMenu) {
  EXPECT_TRUE(item.isShown());
  EXPECT_TRUE(item.toolTip().starts_with("quillmere · ")) << item.toolTip();
  EXPECT_EQ(item.menu().size(), 11U);
  EXPECT_EQ(item.menu()[1].kind, StatusMenuItem::Kind::separator);
  EXPECT_EQ(item.find("Sleep Timer")->children.size(), 5U);
  EXPECT_EQ(item.find("Quit quillmere")->key, "q");
  EXPECT_EQ(item.find("Engage Whisper Mode")->icon, StatusMenuIcon::whisper);
}

TEST_F(Icon, ToolTipTellsTheOutputsLevelWhatSoundsAndWhisperMode) {
  state().setMasterGain(0.64F);
  EXPECT_EQ(item.toolTip(), "quillmere · 64%");
  box->setSounding(spotify, true);
  box->advanceSeconds(0.5);
  EXPECT_EQ(item.toolTip(), "quillmere · 64% · 1 live");
  state().toggleWhisperMode();
  EXPECT_TRUE(item.toolTip().ends_with(" · Whisper Mode")) << item.toolTip();
}

TEST_F(Icon, ANameOfSeveralLinesIsOneEntryOnOne) {
  state().addProfile("Late\nevening");
  EXPECT_NE(item.find("Late evening"), nullptr);
}

TEST_F(Icon, ClickCarriesItsPlaceAndToken) {
  item.activate({StatusItemPoint{7, 9}, "token"});
  EXPECT_EQ(clicks, (std::vector<StatusItemActivation>{{StatusItemPoint{7, 9}, "token"}}));
}

TEST_F(Icon, EntryCarriesTheTokenToTheWindowItOpens) {
  item.choose(idOf("Open quillmere Window"), "token");
  EXPECT_EQ(opened, (std::vector<std::string>{"none/token"}));
}

TEST_F(Icon, WheelMovesTheMaster) {
  state().setMasterGain(0.5F);
  item.scroll(120);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.52F);
}

TEST_F(Icon, MenuIsTrueBeforeAnyoneOpensIt) {
  state().toggleWhisperMode();
  EXPECT_NE(item.find("Restore from Whisper Mode"), nullptr);
}

TEST_F(Icon, CountdownIsBroughtUpToDateWhenTheMenuOpens) {
  state().startSleepTimer(30);
  box->advanceSeconds(61.0);
  item.openMenu();
  EXPECT_NE(item.find("Sleep Timer · 28:59"), nullptr);
}

TEST_F(Icon, EntriesThatStayKeepTheirIdentity) {
  const int whisper = idOf("Engage Whisper Mode");
  const int sleep = idOf("Sleep Timer");
  const int quit = idOf("Quit quillmere");
  state().toggleWhisperMode();
  state().addProfile("Evening");
  state().startSleepTimer(30);
  item.openMenu();
  EXPECT_EQ(idOf("Restore from Whisper Mode"), whisper);
  EXPECT_EQ(idOf("Quit quillmere"), quit);
  EXPECT_EQ(item.menu()[3].id, sleep);
}

void collect(const std::vector<StatusMenuItem>& items, std::multiset<int>& ids) {
  for (const auto& each : items) {
    ids.insert(each.id);
    collect(each.children, ids);
  }
}

TEST_F(Icon, EveryEntryHasAnIdentityOfItsOwn) {
  // Two profiles of one name are still two.
  state().addProfile("Evening");
  state().addProfile("Evening");
  std::multiset<int> ids;
  collect(item.menu(), ids);
  EXPECT_EQ(ids.size(), std::set<int>(ids.begin(), ids.end()).size());
  EXPECT_GT(*ids.begin(), 0);
}

TEST_F(Icon, ProfileIsAppliedAndChecked) {
  state().addProfile("Evening");
  const auto id = state().profiles()->back().id;
  EXPECT_EQ(item.find("Evening")->isChecked, false);
  EXPECT_TRUE(item.choose("Evening"));
  EXPECT_EQ(*state().activeProfileID(), id);
  EXPECT_EQ(item.find("Evening")->isChecked, true);
}

TEST_F(Icon, AnEntryThatHasGoneDoesNothing) {
  const int thirty = idOf("30 minutes");
  state().startSleepTimer(15);
  const auto ends = *state().sleepTimerEndsAt();
  item.choose(thirty);
  item.choose(4711);
  EXPECT_EQ(*state().sleepTimerEndsAt(), ends);
}

TEST_F(Icon, ChoosingASubmenuDoesNothing) {
  item.choose(idOf("Sleep Timer"));
  EXPECT_FALSE(state().sleepTimerEndsAt()->has_value());
}

}  // namespace
}  // namespace quillmere
