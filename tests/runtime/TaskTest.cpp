// Tasks: start, sleep, cancel, nest, and who keeps their frames alive.
#include "runtime/Task.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "runtime/LoopExecutor.h"
#include "runtime/ThreadPoolExecutor.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

TEST(Task, StartsThroughTheQueueAndNotInsideTheCall) {
  VirtualTime time;
  bool ran = false;
  const auto task = startTask(time.main(), [&](TaskContext&) -> Async<void> {
    ran = true;
    co_return;
  });
  EXPECT_FALSE(ran);
  time.runUntilIdle();
  EXPECT_TRUE(ran);
  EXPECT_TRUE(task.isFinished());
}

TEST(Task, SleepsForMonotonicTime) {
  VirtualTime time;
  int turns = 0;
  startTask(time.main(), [&](TaskContext& task) -> Async<void> {
    while (!task.isCancelled()) {
      ++turns;
      co_await task.sleep(150ms);
    }
  });
  time.runUntilIdle();
  EXPECT_EQ(turns, 1);
  time.advance(149ms);
  EXPECT_EQ(turns, 1);
  time.advance(1ms);
  EXPECT_EQ(turns, 2);
  time.advance(1500ms);
  EXPECT_EQ(turns, 12);
}

TEST(Task, CancellingWakesASleepAtOnce) {
  VirtualTime time;
  bool ended = false;
  const auto task = startTask(time.main(), [&](TaskContext& context) -> Async<void> {
    co_await context.sleep(1h);
    ended = context.isCancelled();
  });
  time.runUntilIdle();
  task.cancel();
  EXPECT_FALSE(ended) << "cancelling is a request: the body goes on through its executor";
  time.runUntilIdle();
  EXPECT_TRUE(ended);
  EXPECT_TRUE(task.isFinished());
}

TEST(Task, SleepingOnACancelledTaskReturnsAtOnce) {
  VirtualTime time;
  int sleeps = 0;
  const auto task = startTask(time.main(), [&](TaskContext& context) -> Async<void> {
    for (; sleeps < 3; ++sleeps) co_await context.sleep(1h);
  });
  task.cancel();
  time.runUntilIdle();
  EXPECT_EQ(sleeps, 3);
}

TEST(Task, ACancelledSleepLeavesNoTimerBehind) {
  VirtualTime time;
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  const auto task = startTask(
      time.main(), [held = std::move(held)](TaskContext& context) -> Async<void> { co_await context.sleep(1h); });
  time.runUntilIdle();
  task.cancel();
  time.runUntilIdle();
  EXPECT_TRUE(watch.expired()) << "an hour-long timer must not keep an ended task's captures";
}

TEST(Task, HandleMayOutliveTheTask) {
  Task task;
  {
    VirtualTime time;
    task = startTask(time.main(), [](TaskContext& context) -> Async<void> { co_await context.sleep(1s); });
    time.runUntilIdle();
  }
  task.cancel();
  EXPECT_TRUE(task.isCancelled());
  EXPECT_FALSE(task.isFinished()) << "it was dropped half-way";
}

TEST(Task, ADefaultHandleNamesNothingAndIgnoresCancelling) {
  const Task task;
  EXPECT_FALSE(task);
  task.cancel();
  EXPECT_FALSE(task.isCancelled());
}

Async<std::string> slowly(TaskContext& task, std::string text) {
  co_await task.sleep(1s);
  co_return text + "!";
}

TEST(Task, AwaitsAnotherCoroutineAndItsSleep) {
  VirtualTime time;
  std::string result;
  startTask(time.main(), [&](TaskContext& task) -> Async<void> {
    result = co_await slowly(task, "hello");
    result += co_await slowly(task, " again");
  });
  time.advance(1s);
  EXPECT_EQ(result, "hello!");
  time.advance(1s);
  EXPECT_EQ(result, "hello! again!");
}

TEST(Task, CancellingReachesANestedSleep) {
  VirtualTime time;
  std::string result;
  const auto task =
      startTask(time.main(), [&](TaskContext& context) -> Async<void> { result = co_await slowly(context, "early"); });
  time.runUntilIdle();
  task.cancel();
  time.runUntilIdle();
  EXPECT_EQ(result, "early!");
}

TEST(Task, ABodyThatIsDroppedReleasesItsFrame) {
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  {
    VirtualTime time;
    startTask(time.main(), [held = std::move(held)](TaskContext& task) mutable -> Async<void> {
      const auto local = std::move(held);
      co_await task.sleep(1h);
    });
    time.runUntilIdle();
    EXPECT_FALSE(watch.expired());
  }
  EXPECT_TRUE(watch.expired());
}

TEST(Task, CancellingFromAnotherThreadEndsALongSleepOnAPool) {
  ThreadPoolExecutor pool(2);
  std::atomic<int> ended{0};
  std::vector<Task> tasks;
  for (int index = 0; index < 200; ++index) {
    tasks.push_back(startTask(pool, [&](TaskContext& task) -> Async<void> {
      co_await task.sleep(1h);
      ++ended;
    }));
  }
  for (const auto& task : tasks) task.cancel();
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (ended.load() < 200 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  EXPECT_EQ(ended.load(), 200);
}

TEST(Task, ManyShortSleepsOnAPoolAllReturn) {
  ThreadPoolExecutor pool(3);
  std::atomic<int> turns{0};
  for (int index = 0; index < 20; ++index) {
    startTask(pool, [&](TaskContext& task) -> Async<void> {
      for (int turn = 0; turn < 50; ++turn) {
        co_await task.sleep(100us);
        ++turns;
      }
    });
  }
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (turns.load() < 1000 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  EXPECT_EQ(turns.load(), 1000);
}

TEST(LoopExecutor, RunsWorkAndTimersOnTheThreadThatRunsIt) {
  LoopExecutor loop;
  std::vector<std::string> order;
  loop.postAfter(2ms, [&] {
    EXPECT_TRUE(loop.isCurrent());
    order.emplace_back("later");
    loop.stop();
  });
  loop.post([&] { order.emplace_back("first"); });
  const auto dropped = loop.postAfter(1ms, [&] { order.emplace_back("cancelled"); });
  loop.cancelTimer(dropped);
  loop.run();
  EXPECT_EQ(order, (std::vector<std::string>{"first", "later"}));
}

TEST(LoopExecutor, AnEarlierTimerOvertakesALaterOne) {
  LoopExecutor loop;
  std::thread other([&] {
    loop.postAfter(1h, [] {});
    loop.postAfter(1ms, [&] { loop.stop(); });
  });
  loop.run();
  other.join();
}

}  // namespace
}  // namespace quillmere
