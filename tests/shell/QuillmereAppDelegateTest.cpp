// Launch order, accessory life and the first appearance of the main window.
#include "shell/QuillmereAppDelegate.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryWindowSystem.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

class Shell : public ::testing::Test {
 protected:
  QuillmereAppDelegate makeDelegate(bool isOnlyInstance = true) {
    LaunchSteps steps;
    steps.acquireInstance = [this, isOnlyInstance] {
      windows.calls.emplace_back("acquire");
      return isOnlyInstance;
    };
    steps.startUpdater = [this] { windows.calls.emplace_back("updater"); };
    steps.createStatusItem = [this] { windows.calls.emplace_back("status item"); };
    return {time.runtime(log), windows, std::move(steps)};
  }

  VirtualTime time;
  StandardErrorLogSink log;
  MemoryWindowSystem windows{{"main", "onboarding", "popover"}};
};

using Calls = std::vector<std::string>;

TEST_F(Shell, LaunchGoesInOrderAndTheStatusItemComesJustAfter) {
  auto delegate = makeDelegate();
  EXPECT_TRUE(delegate.applicationDidFinishLaunching());
  EXPECT_EQ(windows.calls, (Calls{"acquire", "policy accessory", "updater"}));
  time.runUntilIdle();
  EXPECT_EQ(windows.calls.back(), "status item");
}

TEST_F(Shell, ASecondInstanceEndsBeforeUpdaterAndStatusItem) {
  auto delegate = makeDelegate(false);
  EXPECT_FALSE(delegate.applicationDidFinishLaunching());
  time.runUntilIdle();
  EXPECT_EQ(windows.calls, (Calls{"acquire", "terminate"}));
}

TEST_F(Shell, ClosingAllWindowsDoesNotEndTheProgram) {
  EXPECT_FALSE(makeDelegate().applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(Shell, OpeningTheMainWindowMakesTheProgramRegular) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("main");
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::regular);
}

TEST_F(Shell, ClosingTheLastTrackedWindowReturnsToAccessory) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("main");
  windows.close("main");
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::regular) << "only after the closing has been handled";
  time.runUntilIdle();
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::accessory);
}

TEST_F(Shell, ClosingOneOfTwoTrackedWindowsStaysRegular) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("main");
  windows.open("onboarding");
  windows.close("main");
  time.runUntilIdle();
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::regular);
}

TEST_F(Shell, AWindowOutsideTheSetLeavesThePolicyAlone) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("popover");
  time.runUntilIdle();
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::accessory);
}

TEST_F(Shell, AnUnchangedPolicyIsNotSetAgain) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("main");
  windows.calls.clear();
  delegate.refreshActivationPolicy();
  EXPECT_TRUE(windows.calls.empty());
}

TEST_F(Shell, AReturningUserSeesTheMainWindowInFront) {
  auto delegate = makeDelegate();
  delegate.handleMainWindowAppear(true);
  EXPECT_TRUE(windows.calls.empty());
  time.runUntilIdle();
  EXPECT_EQ(windows.calls, (Calls{"activate", "front main"}));
}

TEST_F(Shell, AFirstRunHandsOverToTheOnboarding) {
  auto delegate = makeDelegate();
  windows.open("main");
  windows.calls.clear();
  delegate.handleMainWindowAppear(false);
  time.runUntilIdle();
  EXPECT_EQ(windows.calls, (Calls{"close main"}));
  time.advance(std::chrono::milliseconds(50));
  EXPECT_EQ(windows.calls, (Calls{"close main", "open onboarding", "activate"}));
}

TEST_F(Shell, TheMainWindowTakesThePlaceOfAnOnboardingThatIsOver) {
  auto delegate = makeDelegate();
  delegate.applicationDidFinishLaunching();
  windows.open("onboarding");
  windows.calls.clear();
  delegate.finishOnboarding();
  EXPECT_EQ(windows.calls, (Calls{"close onboarding", "open main", "activate"}));
  time.runUntilIdle();
  EXPECT_EQ(windows.activationPolicy(), ActivationPolicy::regular);
}

TEST_F(Shell, WithoutAnOnboardingAFirstRunKeepsItsMainWindow) {
  MemoryWindowSystem bare({"main"});
  QuillmereAppDelegate delegate(time.runtime(log), bare, {});
  delegate.handleMainWindowAppear(false);
  time.advance(std::chrono::seconds(1));
  EXPECT_EQ(bare.calls, (Calls{"activate", "front main"}));
}

using ShellDeathTest = Shell;

TEST_F(ShellDeathTest, EveryCallOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  auto delegate = makeDelegate();
  const auto elsewhere = [this](const std::function<void()>& call) {
    time.background().post(call);
    time.runUntilIdle();
  };
  EXPECT_DEATH(elsewhere([&] { delegate.applicationDidFinishLaunching(); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { delegate.refreshActivationPolicy(); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { delegate.handleMainWindowAppear(true); }), "off the main thread");
  EXPECT_DEATH(elsewhere([&] { delegate.finishOnboarding(); }), "off the main thread");
}

}  // namespace
}  // namespace quillmere
