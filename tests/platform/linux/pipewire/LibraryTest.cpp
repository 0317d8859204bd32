// What the daemon's library does for its clients on every release that we run on.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>

#include <thread>

#include "support/ChildProcess.h"
#include "support/Machine.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class Library : public SessionTest {};

bool isRealTimeGranted() {
  bool isGranted = false;
  std::thread([&] {
    const sched_param parameters{.sched_priority = 1};
    isGranted = pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) == 0;
  }).join();
  return isGranted;
}

TEST_F(Library, TheAudioThreadHasRealTimePriority) {
  if (!isRealTimeGranted()) GTEST_SKIP() << "this machine grants us no real-time priority";
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 0; })) << machine.log.all();
  const int policy = tap.schedulingPolicy() & ~SCHED_RESET_ON_FORK;
  EXPECT_TRUE(policy == SCHED_FIFO || policy == SCHED_RR) << policy;
}

TEST_F(Library, NothingThatWeAskOfItMakesItWarn) {
  ::testing::internal::CaptureStderr();
  {
    const auto player = playSignal({"--app-id", "test.player"});
    Machine machine;
    EXPECT_TRUE(machine.waitForSound("test.player"));
    const TapUnderTest tap(machine, "test.player", 0.5F);
    EXPECT_TRUE(eventually([&] { return tap.calls() > 0; })) << machine.log.all();
  }
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace quillmere::test
