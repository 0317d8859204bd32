// The switch and the system behind it.
#include "integrations/LaunchAtLogin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "platform/memory/MemoryLoginItem.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Login : public ::testing::Test {
 protected:
  ~Login() override {
    login.reset();
    time.shutDown();
  }
  /// The switch once its first read is through.
  LaunchAtLogin& made() {
    if (!login) {
      login.emplace(item, time.runtime(log));
      time.runUntilIdle();
      watch = login->isOn().observe([this](bool on) { told.push_back(on); });
    }
    return *login;
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryLoginItem item;
  std::optional<LaunchAtLogin> login;
  std::vector<bool> told;
  Subscription watch;
};

TEST_F(Login, OnlyEnabledCountsAsOn) {
  made();
  for (const auto status : {LoginItemStatus::notRegistered, LoginItemStatus::requiresApproval,
                            LoginItemStatus::notFound, static_cast<LoginItemStatus>(7)}) {
    item.setStatus(status);
    made().refresh();
    time.runUntilIdle();
    EXPECT_FALSE(*made().isOn());
  }
  item.setStatus(LoginItemStatus::enabled);
  made().refresh();
  time.runUntilIdle();
  EXPECT_TRUE(*made().isOn());
}

TEST_F(Login, BeginsWithWhatTheSystemSays) {
  item.setStatus(LoginItemStatus::enabled);
  EXPECT_TRUE(*made().isOn());
}

TEST_F(Login, TheSwitchRegistersAndUnregisters) {
  made().setEnabled(true);
  EXPECT_TRUE(*made().isOn()) << "the switch does not wait";
  time.runUntilIdle();
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
  made().setEnabled(false);
  time.runUntilIdle();
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  EXPECT_THAT(told, ElementsAre(true, false));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Login, AFailedChangeIsLoggedAndTheSwitchSnapsBack) {
  made();
  item.failWith("no room");
  made().setEnabled(true);
  time.runUntilIdle();
  EXPECT_FALSE(*made().isOn());
  EXPECT_THAT(told, ElementsAre(true, false));
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines().front().message, "LaunchAtLogin toggle failed: no room");
}

TEST_F(Login, ARegistrationThatWantsAnApprovalReturnsToOff) {
  made();
  item.ignoreChanges();
  item.setStatus(LoginItemStatus::requiresApproval);
  made().setEnabled(true);
  time.runUntilIdle();
  EXPECT_FALSE(*made().isOn());
  EXPECT_THAT(log.lines(), IsEmpty()) << "nothing has failed";
}

TEST_F(Login, AChangeBehindTheProgramsBackShowsWithTheNextLook) {
  made();
  item.setStatus(LoginItemStatus::enabled);
  EXPECT_FALSE(*made().isOn());
  made().refresh();
  time.runUntilIdle();
  EXPECT_TRUE(*made().isOn());
}

TEST_F(Login, OfQuickWishesTheLastCounts) {
  made();
  for (const bool on : {true, false, true, false, true}) made().setEnabled(on);
  time.runUntilIdle();
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
  EXPECT_TRUE(*made().isOn());
  EXPECT_THAT(told, ElementsAre(true, false, true, false, true)) << "no answer from the past between them";
}

TEST_F(Login, TheSystemIsNotTouchedOnTheMainThread) {
  made();
  const int before = item.reads();
  made().setEnabled(true);
  time.runDueOn(time.main());
  EXPECT_EQ(item.reads(), before);
}

TEST_F(Login, AWishIsCarriedOutThoughTheSwitchHasGone) {
  made().setEnabled(true);
  watch.cancel();
  login.reset();
  time.runUntilIdle();
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

}  // namespace
}  // namespace quillmere
