// Serial queues: order, waiting, and the check that stops the process off the queue.
#include "runtime/SerialQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

#include "runtime/Logger.h"
#include "runtime/TransientSerialQueue.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

TEST(SerialQueue, RunsWorkInOrderOneAtATime) {
  std::vector<int> seen;
  {
    const auto queue = makeThreadSerialQueue("app.quillmere.test");
    for (int index = 0; index < 1000; ++index) queue->async([&seen, index] { seen.push_back(index); });
  }
  std::vector<int> expected(1000);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(seen, expected) << "the destructor finishes what is queued";
}

TEST(SerialQueue, SyncWaitsForAllThatWasQueuedBefore) {
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  int count = 0;
  for (int round = 0; round < 100; ++round) {
    queue->async([&] { ++count; });
    int seen = 0;
    queue->sync([&] { seen = count; });
    EXPECT_EQ(seen, round + 1);
  }
}

TEST(SerialQueue, AFreeQueueIsLentToTheThreadThatWaitsForIt) {
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  std::thread::id ran;
  queue->sync([&] { ran = std::this_thread::get_id(); });
  EXPECT_EQ(ran, std::this_thread::get_id());
  EXPECT_FALSE(queue->isCurrent());
}

TEST(SerialQueue, WaitersOfManyThreadsAndQueuedWorkNeverOverlap) {
  constexpr int threadCount = 4;
  constexpr int rounds = 2000;
  int plain = 0;
  std::atomic<int> inside{0};
  std::atomic<bool> overlapped{false};
  const auto step = [&] {
    if (inside.fetch_add(1) != 0) overlapped = true;
    ++plain;
    inside.fetch_sub(1);
  };
  {
    const auto queue = makeThreadSerialQueue("app.quillmere.test");
    std::vector<std::thread> threads;
    for (int index = 0; index < threadCount; ++index) {
      threads.emplace_back([&] {
        for (int round = 0; round < rounds; ++round) {
          queue->async(step);
          queue->sync(step);
        }
      });
    }
    for (auto& thread : threads) thread.join();
  }
  EXPECT_FALSE(overlapped);
  EXPECT_EQ(plain, 2 * threadCount * rounds);
}

TEST(SerialQueue, DelayedWorkRunsOnTheQueueAfterItsTimeInTheOrderOfTheTimes) {
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  while (true) {
    const auto start = std::chrono::steady_clock::now();
    std::promise<std::chrono::steady_clock::time_point> last;
    std::vector<std::string> order;
    const auto ran = [&](const char* name) {
      queue->preconditionOnQueue();
      order.emplace_back(name);
      if (order.size() == 3) last.set_value(std::chrono::steady_clock::now());
    };
    queue->asyncAfter(std::chrono::milliseconds(20), [&] { ran("late"); });
    queue->asyncAfter(std::chrono::milliseconds(5), [&] { ran("soon"); });
    queue->async([&] { ran("at once"); });
    const auto asked = std::chrono::steady_clock::now() - start;
    const auto end = last.get_future().get();
    // On a machine that kept this thread waiting between the calls, what was asked for later may well be due first.
    if (asked >= std::chrono::milliseconds(5)) continue;
    EXPECT_GE(end - start, std::chrono::milliseconds(20));
    EXPECT_EQ(order, (std::vector<std::string>{"at once", "soon", "late"}));
    return;
  }
}

TEST(SerialQueue, DelayedWorkThatIsNotDueGoesWithTheQueue) {
  const auto held = std::make_shared<int>(0);
  bool ran = false;
  {
    const auto queue = makeThreadSerialQueue("app.quillmere.test");
    queue->asyncAfter(std::chrono::hours(1), [&ran, held] { ran = true; });
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_FALSE(ran);
  EXPECT_EQ(held.use_count(), 1);
}

/// Tells when the thread that has asked for it has ended.
struct Farewell {
  ~Farewell() {
    if (told != nullptr) told->set_value();
  }
  std::promise<void>* told = nullptr;
};
thread_local Farewell farewell;

TEST(SerialQueue, ItsThreadEndsAWhileAfterTheLastWorkAndAnotherComesForMore) {
  const auto queue = makeTransientSerialQueue("app.quillmere.test", std::chrono::milliseconds(5));
  for (int round = 0; round < 3; ++round) {
    std::promise<void> ended;
    queue->async([&] { farewell.told = &ended; });
    ended.get_future().wait();
  }
  int seen = 0;
  queue->async([&] { ++seen; });
  queue->sync([&] { ++seen; });
  EXPECT_EQ(seen, 2);
}

TEST(SerialQueue, WorkThatComesJustAsTheThreadGoesIsNotLeftBehind) {
  constexpr int rounds = 500;
  std::vector<int> seen;
  const auto queue = makeTransientSerialQueue("app.quillmere.test", Duration::zero());
  for (int round = 0; round < rounds; ++round) {
    std::promise<void> done;
    queue->async([&] {
      seen.push_back(round);
      done.set_value();
    });
    done.get_future().wait();
  }
  std::vector<int> expected(rounds);
  std::iota(expected.begin(), expected.end(), 0);
  EXPECT_EQ(seen, expected);
}

TEST(SerialQueue, WorkThatWaitsForItsTimeKeepsTheThread) {
  const auto queue = makeTransientSerialQueue("app.quillmere.test", Duration::zero());
  std::promise<void> late;
  queue->asyncAfter(std::chrono::milliseconds(20), [&] { late.set_value(); });
  late.get_future().wait();
}

TEST(SerialQueue, KnowsWhetherTheCallerIsOnIt) {
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  EXPECT_FALSE(queue->isCurrent());
  bool inside = false;
  queue->sync([&] {
    inside = queue->isCurrent();
    queue->preconditionOnQueue();
  });
  EXPECT_TRUE(inside);
}

TEST(SerialQueueDeathTest, QueueOnlyWorkCalledOffTheQueueStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  EXPECT_DEATH(queue->preconditionOnQueue(), "off its queue");
}

TEST(SerialQueueDeathTest, WaitingForItselfStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  VirtualTime time;
  const auto queue = time.makeSerialQueue("q");
  EXPECT_DEATH(queue->sync([&] { queue->sync([] {}); }), "wait for itself");
}

TEST(VirtualSerialQueue, SyncRunsOnlyItsOwnQueueFirst) {
  VirtualTime time;
  const auto queue = time.makeSerialQueue("q");
  std::vector<std::string> order;
  time.background().post([&] { order.emplace_back("background"); });
  queue->async([&] { order.emplace_back("queued"); });
  queue->sync([&] { order.emplace_back("sync"); });
  EXPECT_EQ(order, (std::vector<std::string>{"queued", "sync"}));
  time.runUntilIdle();
  EXPECT_EQ(order.back(), "background");
}

TEST(VirtualSerialQueue, DelayedWorkWaitsForItsTimeEvenWhereSomebodyWaitsForTheQueue) {
  VirtualTime time;
  auto queue = time.makeSerialQueue("q");
  int ran = 0;
  queue->asyncAfter(std::chrono::milliseconds(10), [&] { ++ran; });
  queue->sync([] {});
  EXPECT_EQ(ran, 0);
  time.advance(std::chrono::milliseconds(10));
  EXPECT_EQ(ran, 1);
  queue->asyncAfter(std::chrono::milliseconds(10), [&] { ++ran; });
  queue.reset();
  time.advance(std::chrono::seconds(1));
  EXPECT_EQ(ran, 1);
}

TEST(VirtualTime, WallClockJumpsWithoutMovingTheMonotonicOne) {
  VirtualTime time(Date{100.0});
  time.advance(std::chrono::seconds(5));
  EXPECT_DOUBLE_EQ(time.now().secondsSinceReference, 105.0);
  time.jumpWallClock(-50.0);
  EXPECT_DOUBLE_EQ(time.now().secondsSinceReference, 55.0);
  EXPECT_EQ(time.monotonicNow().time_since_epoch(), std::chrono::seconds(5));
}

TEST(VirtualTime, ABlockedThreadLetsTimePassButRunsNothing) {
  VirtualTime time;
  bool ran = false;
  time.main().postAfter(std::chrono::milliseconds(10), [&] { ran = true; });
  time.sleepThread(std::chrono::seconds(1));
  EXPECT_FALSE(ran);
  EXPECT_EQ(time.threadSleepCount(), 1);
  time.runUntilIdle();
  EXPECT_TRUE(ran);
}

TEST(Logger, FormatsNumbersAndTextsOfAnyLength) {
  const std::string longText(5000, 'x');
  EXPECT_EQ(logText("%s → %.*f", "app", 2, 0.5), "app → 0.50");
  EXPECT_EQ(logText("[%s]", longText.c_str()).size(), 5002U);
}

}  // namespace
}  // namespace quillmere
