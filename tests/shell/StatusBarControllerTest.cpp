// What the status item's entries do to a real state.
#include "shell/StatusBarController.h"

#include <gtest/gtest.h>

#include "StateFixture.h"
#include "platform/Updater.h"
#include "platform/memory/MemoryWindowSystem.h"

namespace quillmere {
namespace {

class RecordingUpdater final : public Updater {
 public:
  void checkForUpdates() override { ++checks; }
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latest; }
  Observable<std::optional<std::string>> latest;
  int checks = 0;
};

class StatusBar : public StateFixture {
 protected:
  StatusBar() { startWithThree(); }

  StatusBarController makeController() {
    StatusBarIntents intents;
    intents.openMainWindow = [this](const ActivationRequest& request) {
      opened.push_back(request.section.value_or("none"));
    };
    intents.togglePopover = [this](const StatusItemActivation&) { ++toggles; };
    return {state(), box->runtime, windows, std::move(intents)};
  }
  static StatusMenuEntry entryFor(StatusAction action) {
    StatusMenuEntry entry;
    entry.action = action;
    return entry;
  }

  MemoryWindowSystem windows{{"main"}};
  RecordingUpdater updater;
  std::vector<std::string> opened;
  int toggles = 0;
};

TEST_F(StatusBar, ALeftClickTogglesThePopover) {
  auto controller = makeController();
  controller.handleClick();
  EXPECT_EQ(toggles, 1);
}

TEST_F(StatusBar, WhisperEntryFollowsTheModeAtTheTimeTheMenuIsOpened) {
  auto controller = makeController();
  EXPECT_EQ(controller.rebuildMenu()[2].title, "Engage Whisper Mode");
  controller.perform(entryFor(StatusAction::toggleWhisper));
  EXPECT_TRUE(*state().isWhisperMode());
  EXPECT_EQ(controller.rebuildMenu()[2].title, "Restore from Whisper Mode");
}

TEST_F(StatusBar, SleepEntryStartsATimerOfItsTagAndTheTitleIsASnapshot) {
  auto controller = makeController();
  auto entry = entryFor(StatusAction::sleepFor);
  entry.tag = 90;
  controller.perform(entry);
  EXPECT_EQ(controller.rebuildMenu()[3].title, "Sleep Timer · 90:00");
  box->advanceSeconds(1.0);
  EXPECT_EQ(controller.rebuildMenu()[3].title, "Sleep Timer · 89:59");
  controller.perform(entryFor(StatusAction::cancelSleep));
  EXPECT_EQ(controller.rebuildMenu()[3].title, "Sleep Timer");
}

TEST_F(StatusBar, ProfileEntryAppliesItsProfile) {
  state().addProfile("Evening");
  auto controller = makeController();
  const auto entry = controller.rebuildMenu()[4].submenu.back();
  EXPECT_EQ(entry.title, "Evening");
  controller.perform(entry);
  EXPECT_EQ(state().activeProfileID().get(), state().profiles().get().back().id);
  EXPECT_TRUE(controller.rebuildMenu()[4].submenu.back().isOn);
}

TEST_F(StatusBar, AProfileEntryWithoutAUuidIsIgnored) {
  auto controller = makeController();
  auto entry = entryFor(StatusAction::applyProfile);
  entry.representedObject = "not a uuid";
  controller.perform(entry);
  EXPECT_EQ(state().activeProfileID().get(), std::nullopt);
}

TEST_F(StatusBar, SettingsOpensTheMainWindowAtItsSection) {
  auto controller = makeController();
  controller.perform(entryFor(StatusAction::openMainWindow));
  controller.perform(entryFor(StatusAction::openSettings));
  EXPECT_EQ(opened, (std::vector<std::string>{"none", "Settings"}));
}

TEST_F(StatusBar, AboutBringsTheProgramToTheFrontFirst) {
  auto controller = makeController();
  controller.perform(entryFor(StatusAction::openAbout));
  EXPECT_EQ(windows.calls, (std::vector<std::string>{"activate", "about"}));
}

TEST_F(StatusBar, QuitTerminates) {
  auto controller = makeController();
  controller.perform(entryFor(StatusAction::quit));
  EXPECT_EQ(windows.calls, std::vector<std::string>{"terminate"});
}

TEST_F(StatusBar, WithoutAnUpdaterTheDownloadPageOpens) {
  auto controller = makeController();
  EXPECT_EQ(controller.rebuildMenu()[8].title, "Check for Updates…");
  controller.perform(entryFor(StatusAction::checkForUpdates));
  ASSERT_EQ(box->workspace.openedURLs().size(), 1U);
  EXPECT_TRUE(box->workspace.openedURLs().front().ends_with("/download"));
}

TEST_F(StatusBar, WithAnUpdaterBothFormsOfTheEntryAskIt) {
  auto controller = makeController();
  state().useUpdater(updater);
  controller.perform(entryFor(StatusAction::checkForUpdates));
  updater.latest.set("999.0");
  EXPECT_EQ(controller.rebuildMenu()[8].title, "Download update…");
  controller.perform(entryFor(StatusAction::checkForUpdates));
  EXPECT_EQ(updater.checks, 2);
  EXPECT_TRUE(box->workspace.openedURLs().empty());
}

TEST_F(StatusBar, TheMenuChangesWhenAVersionBecomesKnown) {
  auto controller = makeController();
  state().useUpdater(updater);
  int changes = 0;
  controller.observeMenu([&] { ++changes; });
  updater.latest.set("999.0");
  EXPECT_EQ(changes, 1);
}

TEST_F(StatusBar, AnOlderPublishedVersionIsNoUpdate) {
  auto controller = makeController();
  state().useUpdater(updater);
  updater.latest.set("0.0.1");
  EXPECT_EQ(controller.rebuildMenu()[8].title, "Check for Updates…");
}

TEST_F(StatusBar, WheelMovesTheMasterByTwoPercentANotch) {
  auto controller = makeController();
  state().setMasterGain(0.5F);
  controller.handleScroll(120);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.52F);
  controller.handleScroll(-120);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.5F);
}

TEST_F(StatusBar, APanelThatTellsTwoNotchesForOneMovesTheMasterByOneStep) {
  auto controller = makeController();
  state().setMasterGain(0.5F);
  controller.handleScroll(-240);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.48F);
}

TEST_F(StatusBar, AScrollOfNoughtOverTheIconMovesNothing) {
  auto controller = makeController();
  state().setMasterGain(0.5F);
  controller.handleScroll(0);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.5F);
}

TEST_F(StatusBar, FineWheelStepsAddUpToANotch) {
  auto controller = makeController();
  state().setMasterGain(0.5F);
  for (int step = 0; step < 7; ++step) controller.handleScroll(15);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.5F);
  controller.handleScroll(15);
  EXPECT_FLOAT_EQ(*state().masterGain(), 0.52F);
}

TEST_F(StatusBar, WheelStopsAtTheEnds) {
  auto controller = makeController();
  state().setMasterGain(0.99F);
  controller.handleScroll(1200);
  EXPECT_FLOAT_EQ(*state().masterGain(), 1.0F);
}

TEST_F(StatusBar, MenuObserversHearOfWhatTheMenuShows) {
  auto controller = makeController();
  int changes = 0;
  controller.observeMenu([&] { ++changes; });
  state().toggleWhisperMode();
  state().startSleepTimer(15);
  state().addProfile("New");
  EXPECT_EQ(changes, 3);
}

using StatusBarDeathTest = StatusBar;

TEST_F(StatusBarDeathTest, EveryCallOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  auto controller = makeController();
  const auto elsewhere = [this](const std::function<void()>& call) {
    box->time.background().post(call);
    box->time.runUntilIdle();
  };
  EXPECT_DEATH(elsewhere([&] { static_cast<void>(controller.rebuildMenu()); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { controller.perform(entryFor(StatusAction::none)); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { controller.handleClick(); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { controller.handleScroll(0); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { controller.observeMenu([] {}); }), "off the main thread");
}

}  // namespace
}  // namespace quillmere
