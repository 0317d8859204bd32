// The windows' process: started when a window is wanted, ended when there is nothing to draw, missed by nobody.
#include "shell/WindowsProcess.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "LineLauncher.h"
#include "StartedState.h"
#include "remote/SeamVersion.h"
#include "remote/SendMessage.h"

namespace quillmere {
namespace {

using nlohmann::json;

class WindowsOfTheProgram : public StartedState {
 protected:
  WindowsOfTheProgram() { launcher.greeting = {{"type", "hello"}, {"version", seamVersion()}}; }
  WindowsIntents intents() {
    WindowsIntents result;
    result.openMainWindow = [this](const ActivationRequest& request) {
      events.push_back("open " + request.section.value_or("none"));
    };
    result.finishOnboarding = [this] { events.emplace_back("finished"); };
    result.halvesDiffer = [this](const std::string& version) { events.push_back("differ " + version); };
    result.mainWindowShown = [this] { events.emplace_back("shown"); };
    result.terminate = [this] { events.emplace_back("terminate"); };
    return result;
  }
  /// What was sent to the process that runs now, of a type.
  std::vector<json> sent(const std::string& type) {
    std::vector<json> found;
    for (const auto& message : launcher.lines.back()->sent) {
      if (message.at("type") == type) found.push_back(message);
    }
    return found;
  }
  void say(const json& message) {
    settle();
    launcher.lines.back()->events.received(encodeMessage(message));
    settle();
  }
  void sayWindow(const char* type) { say({{"type", type}, {"window", "main"}, {"isClosing", true}}); }
  void die() {
    launcher.lines.back()->events.closed();
    settle();
  }

  LineLauncher launcher;
  std::vector<std::string> events;
  WindowsProcess windows{launcher, state(), box->runtime, intents()};
};

TEST_F(WindowsOfTheProgram, NoProcessRunsBeforeAWindowIsWanted) {
  windows.activate();
  windows.close("main");
  windows.orderFront("main");
  EXPECT_TRUE(launcher.lines.empty());
  EXPECT_TRUE(windows.windows().empty());
}

TEST_F(WindowsOfTheProgram, TheFirstWordIsTheStateAndThenTheWish) {
  windows.togglePopover({StatusItemPoint{10, 20}, "token"});
  ASSERT_EQ(launcher.lines.size(), 1U);
  EXPECT_EQ(launcher.lines[0]->sent[0].at("type"), "hello");
  EXPECT_EQ(launcher.lines[0]->sent[1].at("type"), "fields");
  const auto wish = sent("togglePopover");
  ASSERT_EQ(wish.size(), 1U);
  EXPECT_EQ(wish[0].at("x"), 10);
  EXPECT_EQ(wish[0].at("y"), 20);
  EXPECT_EQ(wish[0].at("token"), "token");
}

TEST_F(WindowsOfTheProgram, OneProcessDrawsThemAll) {
  windows.togglePopover({});
  windows.open("main");
  windows.showAboutPanel({});
  EXPECT_EQ(launcher.lines.size(), 1U);
  EXPECT_FALSE(sent("togglePopover")[0].contains("x"));
}

TEST_F(WindowsOfTheProgram, WishesAreNumberedAndNothingElseIs) {
  windows.setOldTrayWanted(true);
  windows.oldTray()->setToolTip("quillmere");
  windows.togglePopover({});
  windows.activate();
  state().setGain(0.5F, spotify);
  std::vector<std::string> numbered;
  for (const auto& message : launcher.lines[0]->sent) {
    if (!message.contains("number")) continue;
    numbered.push_back(message.at("type").get<std::string>());
    EXPECT_EQ(message.at("number"), numbered.size());
  }
  EXPECT_EQ(numbered, (std::vector<std::string>{"keepOldTray", "togglePopover", "activate"}));
}

TEST_F(WindowsOfTheProgram, UnknownWindowsAreNotOpened) {
  windows.open("cellar");
  EXPECT_TRUE(launcher.lines.empty());
}

TEST_F(WindowsOfTheProgram, ProcessWithNothingToDrawEnds) {
  windows.togglePopover({});
  say({{"type", "idle"}, {"seen", 1}});
  EXPECT_FALSE(launcher.lines[0]->isOpen);
  EXPECT_FALSE(windows.isRunning());
  state().setGain(0.5F, spotify);
  windows.togglePopover({});
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsOfTheProgram, AWishThatCrossesTheOfferToEndIsNotLost) {
  windows.togglePopover({});
  windows.togglePopover({});
  say({{"type", "idle"}, {"seen", 1}});
  EXPECT_TRUE(launcher.lines[0]->isOpen);
  EXPECT_EQ(sent("togglePopover").size(), 2U);
  say({{"type", "idle"}, {"seen", 2}});
  EXPECT_FALSE(launcher.lines[0]->isOpen);
}

TEST_F(WindowsOfTheProgram, TheListOfWindowsIsWhatTheProcessTells) {
  windows.open("main");
  EXPECT_TRUE(windows.windows().empty());
  sayWindow("windowShown");
  EXPECT_EQ(windows.windows(), (std::vector<WindowInfo>{{"main", true}}));
  EXPECT_EQ(events, (std::vector<std::string>{"shown"}));
  std::vector<std::string> keys;
  windows.onWindowBecameKey([&](const std::string& identifier) { keys.push_back(identifier); });
  sayWindow("windowBecameKey");
  EXPECT_EQ(keys, (std::vector<std::string>{"main"}));
}

TEST_F(WindowsOfTheProgram, AClosingWindowStillCountsAsVisibleWhileItIsTold) {
  windows.open("main");
  sayWindow("windowShown");
  std::vector<WindowInfo> seen;
  windows.onWindowWillClose([&](const std::string&) { seen = windows.windows(); });
  sayWindow("windowHidden");
  EXPECT_EQ(seen, (std::vector<WindowInfo>{{"main", true}}));
  EXPECT_EQ(windows.windows(), (std::vector<WindowInfo>{{"main", false}}));
}

TEST_F(WindowsOfTheProgram, AProcessThatEndsUnaskedTakesItsWindowsAndNothingElse) {
  windows.open("main");
  sayWindow("windowShown");
  std::vector<std::string> closed;
  windows.onWindowWillClose([&](const std::string& identifier) { closed.push_back(identifier); });
  say({{"type", "taken"}, {"seen", 1}});
  die();
  EXPECT_EQ(closed, (std::vector<std::string>{"main"}));
  EXPECT_TRUE(windows.windows().empty());
  EXPECT_FALSE(windows.isRunning());
  EXPECT_EQ(launcher.lines.size(), 1U);
  windows.open("main");
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsOfTheProgram, AWishThatAnEndingProcessHasNotDealtWithIsAskedOfTheNext) {
  windows.open("main");
  say({{"type", "taken"}, {"seen", 1}});
  windows.togglePopover({StatusItemPoint{10, 20}, {}});
  windows.activate();
  die();
  ASSERT_EQ(launcher.lines.size(), 2U);
  EXPECT_EQ(sent("togglePopover").size(), 1U);
  EXPECT_TRUE(sent("openWindow").empty());
  EXPECT_TRUE(sent("activate").empty());
  say({{"type", "taken"}, {"seen", 1}});
  die();
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsOfTheProgram, AWishThatEndsEveryProcessIsGivenUp) {
  windows.togglePopover({});
  die();
  EXPECT_EQ(launcher.lines.size(), 2U);
  die();
  EXPECT_EQ(launcher.lines.size(), 2U);
  EXPECT_FALSE(windows.isRunning());
  windows.togglePopover({});
  EXPECT_EQ(launcher.lines.size(), 3U);
  die();
  EXPECT_EQ(launcher.lines.size(), 4U);
}

TEST_F(WindowsOfTheProgram, WhatAnEndedProcessHasSaidLateIsIgnored) {
  windows.open("main");
  say({{"type", "taken"}, {"seen", 1}});
  const auto first = launcher.lines[0];
  die();
  windows.open("main");
  first->events.received(encodeMessage({{"type", "quit"}}));
  first->events.closed();
  settle();
  EXPECT_TRUE(windows.isRunning());
  EXPECT_TRUE(events.empty());
}

TEST_F(WindowsOfTheProgram, GesturesReachTheMixer) {
  windows.open("main");
  say({{"type", "call"}, {"name", "setGain"}, {"arguments", json::array({0.5, spotify})}});
  EXPECT_TRUE(std::any_of(state().apps()->begin(), state().apps()->end(),
                          [](const AudioApp& app) { return app.bundleID == spotify && app.gain == 0.5F; }));
}

TEST_F(WindowsOfTheProgram, WishesOfTheWindowsReachTheProgram) {
  windows.open("main");
  settle();
  say({{"type", "openMainWindow"}});
  say({{"type", "openMainWindow"}, {"section", "Settings"}});
  say({{"type", "finishOnboarding"}});
  say({{"type", "quit"}});
  EXPECT_EQ(events, (std::vector<std::string>{"open none", "open Settings", "finished", "terminate"}));
}

TEST_F(WindowsOfTheProgram, NonsenseIsLoggedAndIgnored) {
  windows.open("main");
  box->log.clear();
  say({{"type", "windowShown"}});
  say({{"type", "windowHidden"}, {"window", "main"}});
  say({{"type", "idle"}, {"seen", "all"}});
  EXPECT_EQ(box->log.lines().size(), 3U);
  launcher.lines.back()->events.received("\xFF no message");
  say(7);
  EXPECT_TRUE(windows.isRunning());
}

TEST_F(WindowsOfTheProgram, AWindowThatThereIsNoneOfIsNotListed) {
  windows.open("main");
  for (const auto* type : {"windowShown", "windowBecameKey", "windowHidden"}) {
    say({{"type", type}, {"window", "another"}, {"isClosing", false}});
  }
  EXPECT_TRUE(windows.windows().empty());
}

TEST_F(WindowsOfTheProgram, AProgramThatCannotStartItsWindowsGoesOn) {
  launcher.fails = true;
  windows.togglePopover({});
  windows.open("main");
  EXPECT_FALSE(windows.isRunning());
  launcher.fails = false;
  windows.open("main");
  EXPECT_TRUE(windows.isRunning());
}

TEST_F(WindowsOfTheProgram, OldTrayKeepsAProcessAndGetsItBack) {
  windows.oldTray()->setToolTip("quillmere");
  windows.oldTray()->show();
  windows.setOldTrayWanted(true);
  ASSERT_EQ(launcher.lines.size(), 1U);
  EXPECT_EQ(sent("keepOldTray").size(), 1U);
  EXPECT_EQ(sent("statusItemShow").size(), 1U);
  std::vector<bool> told;
  windows.oldTray()->onAvailabilityChanged([&](bool isAvailable) { told.push_back(isAvailable); });
  say({{"type", "statusItemAvailable"}, {"isAvailable", true}});
  EXPECT_TRUE(windows.oldTray()->isAvailable());
  die();
  EXPECT_FALSE(windows.oldTray()->isAvailable());
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
  box->advanceSeconds(1.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
  EXPECT_EQ(sent("statusItemShow").size(), 1U);
}

TEST_F(WindowsOfTheProgram, AProcessThatKeepsEndingIsStartedLessAndLessOften) {
  windows.setOldTrayWanted(true);
  for (int minute = 0; minute < 10; ++minute) {
    for (int second = 0; second < 60; ++second) {
      if (windows.isRunning()) die();
      box->advanceSeconds(1.0);
    }
  }
  EXPECT_GE(launcher.lines.size(), 10U);
  EXPECT_LE(launcher.lines.size(), 20U);
}

TEST_F(WindowsOfTheProgram, OldTrayThatIsNoLongerWantedLetsTheProcessEnd) {
  windows.setOldTrayWanted(true);
  windows.setOldTrayWanted(false);
  EXPECT_EQ(sent("keepOldTray").back().at("isWanted"), false);
  say({{"type", "idle"}, {"seen", 2}});
  EXPECT_FALSE(windows.isRunning());
  die();
  box->advanceSeconds(120.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
}

TEST_F(WindowsOfTheProgram, ASectionIsCarriedToTheWindow) {
  windows.open("main", {"Settings", "token"});
  windows.open("main", {});
  const auto wishes = sent("openWindow");
  ASSERT_EQ(wishes.size(), 2U);
  EXPECT_EQ(wishes[0].at("section"), "Settings");
  EXPECT_EQ(wishes[0].at("token"), "token");
  EXPECT_FALSE(wishes[1].contains("section"));
}

TEST_F(WindowsOfTheProgram, TheOnboardingIsAWindowLikeTheMainOneButNothingBeginsWithIt) {
  windows.open("onboarding");
  EXPECT_EQ(sent("openWindow")[0].at("window"), "onboarding");
  say({{"type", "windowShown"}, {"window", "onboarding"}});
  EXPECT_TRUE(events.empty());
  EXPECT_EQ(windows.windows(), (std::vector<WindowInfo>{{"onboarding", true}}));
}

TEST_F(WindowsOfTheProgram, AnotherVersionsWindowsAreNotListenedTo) {
  launcher.greeting["version"] = "0.0.1 (0)";
  windows.open("main");
  settle();
  EXPECT_EQ(events, (std::vector<std::string>{"differ 0.0.1 (0)"}));
  EXPECT_FALSE(windows.isRunning());
  launcher.lines.back()->events.received(encodeMessage({{"type", "quit"}}));
  settle();
  EXPECT_EQ(events.size(), 1U);
}

TEST_F(WindowsOfTheProgram, AClickInWindowsOfAnotherVersionReachesNoBrowser) {
  const json click{
      {"type", "call"},
      {"name", "activateTab"},
      {"arguments",
       json::array(
           {chrome,
            {{"id", "x:w1:t1"}, {"browserBundleID", chrome}, {"title", ""}, {"urlString", ""}, {"isActive", false}}})}};
  launcher.greeting["version"] = "0.0.1 (0)";
  windows.open("main");
  launcher.lines.back()->events.received(encodeMessage(click));
  settle();
  EXPECT_TRUE(box->browsers.activations().empty());

  launcher.greeting["version"] = seamVersion();
  windows.open("main");
  say(click);
  EXPECT_EQ(box->browsers.activations().size(), 1U);
}

TEST_F(WindowsOfTheProgram, WindowsThatDoNotSayWhatTheyAreAreNotListenedTo) {
  for (const auto& first : {json{{"type", "taken"}, {"seen", 1}}, json{{"type", "hello"}}, json(7),
                            json{{"type", "hello"}, {"version", 7}}}) {
    events.clear();
    launcher.greeting = first;
    windows.open("main");
    settle();
    EXPECT_EQ(events, (std::vector<std::string>{"differ "})) << first;
    EXPECT_FALSE(windows.isRunning());
  }
}

TEST_F(WindowsOfTheProgram, AProcessThatDoesNotReadIsSentNothingButHowThingsHaveComeToBe) {
  windows.open("main");
  const auto line = launcher.lines.back();
  line->waiting = WindowsProcess::mostWaiting + 1;
  const auto before = line->sent.size();
  for (int step = 0; step < 1000; ++step) state().setGain(0.001F * static_cast<float>(step), spotify);
  EXPECT_EQ(line->sent.size(), before);
  line->waiting = 0;
  line->events.drained();
  settle();
  EXPECT_EQ(line->sent.size(), before + 1);
  EXPECT_EQ(line->sent.back().at("name"), "apps");
}

/// Processes that have come up and then hang.
class WindowsThatHang : public WindowsOfTheProgram {
 protected:
  /// The main window shows, and nothing is owed.
  void showMain() {
    windows.open("main");
    sayWindow("windowShown");
    say({{"type", "taken"}, {"seen", 1}});
    events.clear();
  }
  /// The wishes that the process which runs now was asked for, in order.
  std::vector<std::string> wishes() {
    std::vector<std::string> found;
    for (const auto& message : launcher.lines.back()->sent) {
      if (message.contains("number")) found.push_back(message.at("type").get<std::string>());
    }
    return found;
  }
};

TEST_F(WindowsThatHang, AreEndedAndReplacedWithinFiveSecondsOfAnUnansweredWish) {
  showMain();
  windows.togglePopover({StatusItemPoint{10, 20}, {}});
  box->advanceSeconds(3.9);
  EXPECT_EQ(launcher.lines.size(), 1U);
  box->advanceSeconds(1.1);
  ASSERT_EQ(launcher.lines.size(), 2U);
  EXPECT_TRUE(launcher.lines[0]->isGivenUp);
  EXPECT_FALSE(launcher.lines[0]->isOpen);
  EXPECT_EQ(sent("togglePopover")[0].at("x"), 10);
}

TEST_F(WindowsThatHang, TheOpenMainWindowComesBackAndTheWishAfterIt) {
  showMain();
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  EXPECT_EQ(wishes(), (std::vector<std::string>{"openWindow", "togglePopover"}));
  EXPECT_EQ(sent("openWindow")[0].at("window"), "main");
  sayWindow("windowShown");
  EXPECT_TRUE(events.empty()) << "nothing begins with a window that comes back";
  EXPECT_EQ(windows.windows(), (std::vector<WindowInfo>{{"main", true}}));
}

TEST_F(WindowsThatHang, AreNotBelievedToHaveDealtWithWhatTheyWereNeverAsked) {
  showMain();
  for (const json& seen : {json(std::numeric_limits<std::uint64_t>::max()), json(-1), json(1e300), json(true)}) {
    say({{"type", "taken"}, {"seen", seen}});
  }
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsThatHang, AWindowThatWasClosedDoesNotComeBack) {
  showMain();
  sayWindow("windowHidden");
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  EXPECT_EQ(wishes(), (std::vector<std::string>{"togglePopover"}));
}

TEST_F(WindowsThatHang, ImpatientClicksAreOneWish) {
  showMain();
  for (int click = 0; click < 4; ++click) {
    windows.togglePopover({StatusItemPoint{click, 0}, {}});
    box->advanceSeconds(0.5);
  }
  box->advanceSeconds(3.0);
  ASSERT_EQ(launcher.lines.size(), 2U);
  ASSERT_EQ(sent("togglePopover").size(), 1U);
  EXPECT_EQ(sent("togglePopover")[0].at("x"), 3);
}

TEST_F(WindowsThatHang, EveryWishIsTimedNotOnlyTheFirst) {
  showMain();
  box->advanceSeconds(60.0);
  windows.togglePopover({});
  say({{"type", "begun"}, {"seen", 2}});
  say({{"type", "taken"}, {"seen", 2}});
  box->advanceSeconds(60.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
  windows.showAboutPanel({});
  box->advanceSeconds(5.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
  EXPECT_EQ(wishes(), (std::vector<std::string>{"openWindow", "showAboutPanel"}));
}

TEST_F(WindowsThatHang, NobodyWhoOwesNothingIsEnded) {
  showMain();
  box->advanceSeconds(3600.0);
  windows.activate();
  box->advanceSeconds(3600.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
}

TEST_F(WindowsThatHang, OneThatIsAtItsWishHasTime) {
  showMain();
  windows.togglePopover({});
  say({{"type", "begun"}, {"seen", 2}});
  box->advanceSeconds(14.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
  box->advanceSeconds(2.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsThatHang, OneThatIsStillBeingLoadedHasTime) {
  launcher.greeting = nullptr;
  windows.open("main");
  box->advanceSeconds(59.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
  box->advanceSeconds(2.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
}

TEST_F(WindowsThatHang, AWishOfOneThatIsStillBeingLoadedWaitsForItsFirstWord) {
  const auto greeting = std::exchange(launcher.greeting, nullptr);
  // Begun for an icon in an old tray, long before anybody clicks.
  windows.setOldTrayWanted(true);
  box->advanceSeconds(20.0);
  windows.togglePopover({});
  box->advanceSeconds(20.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
  say(greeting);
  EXPECT_EQ(launcher.lines.size(), 1U);
  box->advanceSeconds(5.0);
  EXPECT_EQ(launcher.lines.size(), 2U) << "one that is there takes its wishes up";
}

TEST_F(WindowsThatHang, AWishThatMakesEveryProcessHangIsGivenUpUntilTheNextOne) {
  showMain();
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
  box->advanceSeconds(60.0);
  EXPECT_EQ(launcher.lines.size(), 2U);
  EXPECT_TRUE(launcher.lines[1]->isGivenUp);
  EXPECT_FALSE(windows.isRunning());
  windows.togglePopover({});
  EXPECT_EQ(launcher.lines.size(), 3U);
}

TEST_F(WindowsThatHang, ThatAWindowHasGoneForGoodIsToldOnceItIsGivenUp) {
  showMain();
  std::vector<std::string> closed;
  windows.onWindowWillClose([&](const std::string& identifier) { closed.push_back(identifier); });
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  EXPECT_TRUE(closed.empty()) << "it comes back";
  sayWindow("windowShown");
  box->advanceSeconds(60.0);
  EXPECT_EQ(closed, (std::vector<std::string>{"main"}));
  EXPECT_TRUE(windows.windows().empty());
}

TEST_F(WindowsThatHang, AnOldTrayIsLookedForAgain) {
  windows.setOldTrayWanted(true);
  settle();
  windows.togglePopover({});
  box->advanceSeconds(5.0);
  ASSERT_EQ(launcher.lines.size(), 2U);
  EXPECT_EQ(sent("keepOldTray").size(), 1U);
}

TEST_F(WindowsThatHang, AnIconThatNobodyCanAskAnythingWithIsReplacedToo) {
  windows.setOldTrayWanted(true);
  say({{"type", "taken"}, {"seen", 1}});
  box->advanceSeconds(29.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
  box->advanceSeconds(7.0);
  ASSERT_EQ(launcher.lines.size(), 2U);
  EXPECT_EQ(sent("keepOldTray").size(), 1U);
}

TEST_F(WindowsThatHang, AnIconThatAnswersStays) {
  windows.setOldTrayWanted(true);
  for (int second = 0; second < 300; ++second) {
    box->advanceSeconds(1.0);
    if (const auto& last = launcher.lines.back()->sent.back(); last.contains("number")) {
      say({{"type", "taken"}, {"seen", last.at("number")}});
    }
  }
  EXPECT_EQ(launcher.lines.size(), 1U);
  EXPECT_GE(sent("answer").size(), 9U);
}

TEST_F(WindowsThatHang, AnAnswerThatWaitsForThisThreadIsInTime) {
  showMain();
  windows.togglePopover({});
  // The mixer itself was stopped: its timer is due, and the answer is there, unread.
  box->advanceSeconds(4.0);
  say({{"type", "taken"}, {"seen", 2}});
  box->advanceSeconds(60.0);
  EXPECT_EQ(launcher.lines.size(), 1U);
}

using WindowsOfTheProgramDeathTest = WindowsOfTheProgram;

TEST_F(WindowsOfTheProgramDeathTest, EveryCallOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  const auto elsewhere = [this](const std::function<void()>& call) {
    box->time.background().post(call);
    box->time.runUntilIdle();
  };
  EXPECT_DEATH(elsewhere([&] { windows.togglePopover({}); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.open("main"); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.close("main"); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.orderFront("main"); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.activate(); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.showAboutPanel({}); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { windows.setOldTrayWanted(true); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { static_cast<void>(windows.windows()); }), "off the main thread");
}

}  // namespace
}  // namespace quillmere
