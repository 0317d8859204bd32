// Streams: order, both ends' endings, buffering, abandoned consumers; completions beside them.
#include "runtime/Stream.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "runtime/Completion.h"
#include "runtime/ThreadPoolExecutor.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

Stream<int> counting(Executor& executor, Duration period, int* produced = nullptr) {
  return Stream<int>::produce(executor, [=](TaskContext& task, Stream<int>::Writer& writer) -> Async<void> {
    for (int value = 0; !task.isCancelled(); ++value) {
      writer.yield(value);
      if (produced != nullptr) *produced = value + 1;
      co_await task.sleep(period);
    }
  });
}

TEST(Stream, ConsumerGetsEveryElementInOrder) {
  VirtualTime time;
  std::vector<int> seen;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    auto stream = counting(time.background(), 10ms);
    while (auto value = co_await stream.next()) seen.push_back(*value);
  });
  time.advance(35ms);
  EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3}));
}

TEST(Stream, BufferIsUnboundedWhileTheConsumerIsBusy) {
  VirtualTime time;
  std::vector<int> seen;
  startTask(time.main(), [&](TaskContext& task) -> Async<void> {
    auto stream = counting(time.background(), 1ms);
    co_await task.sleep(100ms);
    for (int index = 0; index < 50; ++index) seen.push_back(*co_await stream.next());
    EXPECT_EQ(time.monotonicNow().time_since_epoch(), 100ms) << "all of it was there already";
  });
  time.advance(101ms);
  EXPECT_EQ(seen.size(), 50U);
  EXPECT_EQ(seen.back(), 49);
}

TEST(Stream, AbandoningTheStreamEndsTheProducerWithinItsPeriod) {
  VirtualTime time;
  int produced = 0;
  {
    const auto stream = counting(time.background(), 100ms, &produced);
    time.advance(250ms);
    EXPECT_EQ(produced, 3);
  }
  time.advance(10s);
  EXPECT_EQ(produced, 3);
}

TEST(Stream, EndOfTheProducerEndsTheConsumerAfterWhatIsBuffered) {
  VirtualTime time;
  std::vector<int> seen;
  bool ended = false;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    auto stream = Stream<int>::produce(time.background(), [](TaskContext&, Stream<int>::Writer& writer) -> Async<void> {
      writer.yield(1);
      writer.yield(2);
      co_return;
    });
    while (auto value = co_await stream.next()) seen.push_back(*value);
    ended = true;
  });
  time.runUntilIdle();
  EXPECT_EQ(seen, (std::vector<int>{1, 2}));
  EXPECT_TRUE(ended);
}

TEST(Stream, CancellingTheConsumerWakesItWithNothing) {
  VirtualTime time;
  bool ended = false;
  const auto consumer = startTask(time.main(), [&](TaskContext&) -> Async<void> {
    auto stream = Stream<int>::produce(
        time.background(), [](TaskContext& task, Stream<int>::Writer&) -> Async<void> { co_await task.sleep(1h); });
    const auto value = co_await stream.next();
    ended = !value.has_value();
  });
  time.runUntilIdle();
  consumer.cancel();
  time.runUntilIdle();
  EXPECT_TRUE(ended);
}

TEST(Stream, DroppingEverythingReleasesBothEnds) {
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = held;
  {
    VirtualTime time;
    startTask(time.main(), [&time, held = std::move(held)](TaskContext&) -> Async<void> {
      auto stream = counting(time.background(), 10ms);
      while (co_await stream.next()) {
      }
    });
    time.advance(100ms);
    EXPECT_FALSE(watch.expired());
  }
  EXPECT_TRUE(watch.expired());
}

TEST(Stream, CrossesFromAPoolToAnotherWithoutLosingElements) {
  ThreadPoolExecutor producers(1);
  ThreadPoolExecutor consumers(2);
  std::atomic<long> sum{0};
  std::atomic<bool> done{false};
  startTask(consumers, [&](TaskContext&) -> Async<void> {
    auto stream = Stream<int>::produce(producers, [](TaskContext& task, Stream<int>::Writer& writer) -> Async<void> {
      for (int value = 1; value <= 5000; ++value) {
        writer.yield(value);
        if (value % 500 == 0) co_await task.sleep(100us);
      }
    });
    while (auto value = co_await stream.next()) sum += *value;
    done = true;
  });
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  while (!done.load() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  EXPECT_EQ(sum.load(), 5000L * 5001L / 2L);
}

TEST(Completion, GivesTheFirstAnswerOnly) {
  VirtualTime time;
  std::optional<int> answer;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    Completion<int> completion;
    const auto resolve = completion.resolver();
    time.background().postAfter(10ms, [resolve] {
      resolve(7);
      resolve(8);
    });
    answer = co_await completion;
  });
  time.advance(10ms);
  EXPECT_EQ(answer, 7);
}

TEST(Completion, AnAnswerBeforeTheWaitIsKept) {
  VirtualTime time;
  std::optional<int> answer;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    Completion<int> completion;
    completion.resolver()(3);
    answer = co_await completion;
  });
  time.runUntilIdle();
  EXPECT_EQ(answer, 3);
}

TEST(Completion, AnAbandonedAnswerDropsTheWaitingTask) {
  VirtualTime time;
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = held;
  startTask(time.main(), [held = std::move(held)](TaskContext&) -> Async<void> {
    Completion<int> completion;
    static_cast<void>(completion.resolver());
    co_await completion;
    ADD_FAILURE() << "nobody answered";
  });
  time.runUntilIdle();
  EXPECT_TRUE(watch.expired());
}

TEST(Completion, CancellingWakesTheWaitWithNothing) {
  VirtualTime time;
  bool woken = false;
  Completion<int>::Resolver* kept = nullptr;
  const auto task = startTask(time.main(), [&](TaskContext&) -> Async<void> {
    Completion<int> completion;
    auto resolver = completion.resolver();
    kept = &resolver;
    woken = !(co_await completion).has_value();
  });
  time.runUntilIdle();
  EXPECT_NE(kept, nullptr);
  task.cancel();
  time.runUntilIdle();
  EXPECT_TRUE(woken);
}

}  // namespace
}  // namespace quillmere
