// Calls and alarms: who is woken, what is kept for those that come later.
#include "runtime/ParkingLot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>
#include <vector>

namespace quillmere {
namespace {

using namespace std::chrono_literals;

MonotonicTime now() { return std::chrono::steady_clock::now(); }

TEST(ParkingLot, ACallThatNobodyWaitsForIsKeptForTheNext) {
  const auto lot = makeParkingLot();
  lot->call();
  lot->wait();
}

TEST(ParkingLot, AnAlarmEndsAWaitAtItsTimeAndNotBefore) {
  const auto lot = makeParkingLot();
  const auto time = now() + 5ms;
  lot->setAlarm(time);
  lot->wait();
  EXPECT_GE(now(), time);
}

TEST(ParkingLot, AnAlarmOfThePastEndsAWaitAtOnce) {
  const auto lot = makeParkingLot();
  lot->setAlarm(MonotonicTime{});
  lot->wait();
  lot->setAlarm(MonotonicTime(-1h));
  lot->wait();
}

TEST(ParkingLot, AnAlarmThatIsTakenBackDoesNotEndAWait) {
  const auto lot = makeParkingLot();
  std::atomic<bool> isCalled{false};
  lot->setAlarm(now() + 20ms);
  lot->setAlarm(std::nullopt);
  std::thread caller([&, past = now() + 40ms] {
    while (now() < past) std::this_thread::yield();
    isCalled = true;
    lot->call();
  });
  lot->wait();
  EXPECT_TRUE(isCalled);
  caller.join();
}

TEST(ParkingLot, EveryAlarmWakesOneOfThoseWhoWait) {
  constexpr int alarms = 20;
  const auto lot = makeParkingLot();
  std::atomic<int> woken{0};
  std::atomic<bool> isOver{false};
  std::vector<std::thread> waiting;
  for (int index = 0; index < 3; ++index) {
    waiting.emplace_back([&] {
      while (true) {
        lot->wait();
        if (isOver) break;
        woken.fetch_add(1);
        woken.notify_all();
      }
      lot->call();
    });
  }
  for (int alarm = 0; alarm < alarms; ++alarm) {
    lot->setAlarm(now() + 100us);
    woken.wait(alarm);
    EXPECT_EQ(woken, alarm + 1);
  }
  isOver = true;
  lot->call();
  for (auto& thread : waiting) thread.join();
}

}  // namespace
}  // namespace quillmere
