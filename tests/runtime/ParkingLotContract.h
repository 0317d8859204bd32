// What every parking lot keeps to: who is woken, what is kept for those that come later.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "runtime/ParkingLot.h"

namespace quillmere {

/// The parameter makes the lot.
class ParkingLotContract : public ::testing::TestWithParam<std::unique_ptr<ParkingLot> (*)()> {
 protected:
  static MonotonicTime now() { return std::chrono::steady_clock::now(); }
};

using namespace std::chrono_literals;

TEST_P(ParkingLotContract, ACallThatNobodyWaitsForIsKeptForTheNext) {
  const auto lot = GetParam()();
  lot->call();
  lot->wait();
}

TEST_P(ParkingLotContract, AnAlarmEndsAWaitAtItsTimeAndNotBefore) {
  const auto lot = GetParam()();
  const auto time = now() + 5ms;
  lot->setAlarm(time);
  lot->wait();
  EXPECT_GE(now(), time);
}

TEST_P(ParkingLotContract, AnAlarmOfThePastEndsAWaitAtOnce) {
  const auto lot = GetParam()();
  lot->setAlarm(MonotonicTime{});
  lot->wait();
  lot->setAlarm(MonotonicTime(-1h));
  lot->wait();
}

TEST_P(ParkingLotContract, AnAlarmThatIsTakenBackDoesNotEndAWait) {
  const auto lot = GetParam()();
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

TEST_P(ParkingLotContract, EveryAlarmWakesOneOfThoseWhoWait) {
  constexpr int alarms = 20;
  const auto lot = GetParam()();
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

}  // namespace quillmere
