// What the monitor makes of the system's answers, and when it asks.
#include "integrations/PermissionMonitor.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/memory/MemoryPermissions.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

class Monitor : public ::testing::Test {
 protected:
  ~Monitor() override {
    monitor.reset();
    time.shutDown();
  }
  PermissionMonitor& made() {
    if (!monitor) monitor.emplace(permissions, time.runtime(log));
    return *monitor;
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryPermissions permissions;
  std::optional<PermissionMonitor> monitor;
};

TEST_F(Monitor, IsCurrentFromTheFirstRead) {
  permissions.setTrusted(true);
  permissions.setFocus(FocusAuthorization::authorized);
  EXPECT_EQ(*made().accessibility(), PermissionStatus::granted);
  EXPECT_EQ(*made().focusStatus(), PermissionStatus::granted);
}

TEST_F(Monitor, AccessibilityIsNeverDenied) {
  EXPECT_EQ(*made().accessibility(), PermissionStatus::notDetermined);
  permissions.setTrusted(true);
  made().refresh();
  EXPECT_EQ(*made().accessibility(), PermissionStatus::granted);
  permissions.setTrusted(false);
  made().refresh();
  EXPECT_EQ(*made().accessibility(), PermissionStatus::notDetermined);
}

TEST_F(Monitor, EveryNumberOfFocusHasItsStatus) {
  const std::vector<std::pair<int, PermissionStatus>> expected{
      {0, PermissionStatus::notDetermined}, {1, PermissionStatus::denied},
      {2, PermissionStatus::denied},        {3, PermissionStatus::granted},
      {4, PermissionStatus::notDetermined}, {-1, PermissionStatus::notDetermined}};
  for (const auto& [number, status] : expected) {
    permissions.setFocusNumber(number);
    made().refresh();
    EXPECT_EQ(*made().focusStatus(), status) << number;
  }
}

TEST_F(Monitor, PollsEveryHalfSecondWhileItIsWanted) {
  made().startPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(499ms);
  EXPECT_EQ(permissions.reads(), before);
  time.advance(1ms);
  EXPECT_EQ(permissions.reads(), before + 1);
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), before + 11);
}

TEST_F(Monitor, TwoStartsLeaveOneLoop) {
  made().startPolling();
  made().startPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), before + 10);
}

TEST_F(Monitor, NothingIsReadOnceItIsStopped) {
  made().startPolling();
  time.advance(1s);
  made().stopPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(10s);
  EXPECT_EQ(permissions.reads(), before);
}

TEST_F(Monitor, GoesOnReadingForTheViewThatIsStillOpen) {
  made().startPolling();
  made().startPolling();
  made().stopPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), before + 10);
  made().stopPolling();
  time.runUntilIdle();
  const int after = permissions.reads();
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), after);
}

TEST_F(Monitor, AStopTooManyCountsForNobodyWhoComesLater) {
  made().stopPolling();
  made().startPolling();
  made().startPolling();
  made().stopPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), before + 10);
}

TEST_F(Monitor, CanBeStartedAgain) {
  made().startPolling();
  time.advance(1s);
  made().stopPolling();
  made().startPolling();
  time.runUntilIdle();
  const int before = permissions.reads();
  time.advance(5s);
  EXPECT_EQ(permissions.reads(), before + 10);
}

TEST_F(Monitor, NothingIsPolledUnasked) {
  const int before = permissions.reads();
  made();
  time.advance(60s);
  EXPECT_EQ(permissions.reads(), before + 1);
}

TEST_F(Monitor, WhatIsRevokedWhileThePageIsOpenShowsWithinHalfASecond) {
  permissions.setTrusted(true);
  permissions.setFocus(FocusAuthorization::authorized);
  made().startPolling();
  time.advance(1s);
  permissions.setTrusted(false);
  permissions.setFocus(FocusAuthorization::denied);
  time.advance(500ms);
  EXPECT_EQ(*made().accessibility(), PermissionStatus::notDetermined);
  EXPECT_EQ(*made().focusStatus(), PermissionStatus::denied);
}

TEST_F(Monitor, ChangesThatTheSystemTellsAreReadAtOnce) {
  made();
  permissions.setTrusted(true);
  permissions.tellChanged();
  EXPECT_EQ(*made().accessibility(), PermissionStatus::granted);
}

TEST_F(Monitor, TheAnswerToARequestIsReadOnTheMainThread) {
  made().requestFocusStatus();
  EXPECT_EQ(permissions.openQuestions(), 1U);
  std::thread([this] { permissions.answerFocus(FocusAuthorization::authorized); }).join();
  EXPECT_EQ(*made().focusStatus(), PermissionStatus::notDetermined);
  time.runUntilIdle();
  EXPECT_EQ(*made().focusStatus(), PermissionStatus::granted);
}

TEST_F(Monitor, AnAnswerThatComesTooLateIsNobodys) {
  made().requestFocusStatus();
  made().startPolling();
  monitor.reset();
  const int before = permissions.reads();
  permissions.answerFocus(FocusAuthorization::authorized);
  permissions.tellChanged();
  time.advance(2s);
  EXPECT_EQ(permissions.reads(), before);
}

TEST_F(Monitor, SettingsOpenAtTheAnchor) {
  made().openSystemSettings("Privacy_FocusStatus");
  EXPECT_EQ(permissions.opened(), std::vector<std::string>{"Privacy_FocusStatus"});
}

TEST_F(Monitor, GrantingAccessibilityAsksOpensTheSettingsAndReadsAgain) {
  made();
  permissions.setTrusted(true);
  made().grantAccessibility();
  EXPECT_EQ(permissions.prompts(), 1);
  EXPECT_EQ(permissions.opened(), std::vector<std::string>{"Privacy_Accessibility"});
  EXPECT_EQ(*made().accessibility(), PermissionStatus::granted);
}

TEST_F(Monitor, GrantingFocusStatusAsksAndOpensTheSettings) {
  made().grantFocusStatus();
  EXPECT_EQ(permissions.openQuestions(), 1U);
  EXPECT_EQ(permissions.opened(), std::vector<std::string>{"Privacy_FocusStatus"});
}

TEST_F(Monitor, GrantingTellsWhetherThereWereSettingsToOpen) {
  EXPECT_TRUE(made().grantAccessibility());
  EXPECT_TRUE(made().grantFocusStatus());
  permissions.setHasSettings(false);
  EXPECT_FALSE(made().grantAccessibility());
  EXPECT_FALSE(made().grantFocusStatus());
  EXPECT_FALSE(made().openSystemSettings("Privacy_FocusStatus"));
}

}  // namespace
}  // namespace quillmere
