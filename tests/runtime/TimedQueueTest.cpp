// Timers and the queue on them: order, dropping, who is woken for what, the end.
#include "runtime/TimedQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include "runtime/ThreadPoolExecutor.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

MonotonicTime at(Duration time) { return MonotonicTime(time); }

class TimerStoreTest : public testing::Test {
 protected:
  Work noting(int number) {
    return [this, number] { ran.push_back(number); };
  }
  void run(MonotonicTime now) {
    std::deque<Work> ready;
    store.moveDue(now, ready);
    for (const auto& work : ready) work();
  }

  TimerStore store;
  std::vector<int> ran;
};

TEST_F(TimerStoreTest, HandsOutWhatIsDueByTimeThenByTheOrderOfTheAdds) {
  store.add(at(20ms), noting(3));
  store.add(at(10ms), noting(1));
  store.add(at(10ms), noting(2));
  store.add(at(21ms), noting(4));
  run(at(9ms));
  EXPECT_TRUE(ran.empty());
  run(at(20ms));
  EXPECT_THAT(ran, ElementsAre(1, 2, 3));
  EXPECT_EQ(store.nextDue(), at(21ms));
  run(at(1h));
  EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(store.nextDue(), std::nullopt);
}

TEST_F(TimerStoreTest, ARemovedTimerIsGoneAndItsNumberNamesNothing) {
  const auto first = store.add(at(10ms), noting(1));
  const auto second = store.add(at(10ms), noting(2));
  EXPECT_NE(first, second);
  const auto removed = store.remove(first);
  ASSERT_TRUE(removed);
  removed();
  EXPECT_THAT(ran, ElementsAre(1)) << "it is its own work that comes back";
  EXPECT_FALSE(store.remove(first));
  EXPECT_FALSE(store.remove(0));
  run(at(10ms));
  EXPECT_THAT(ran, ElementsAre(1, 2));
  EXPECT_FALSE(store.remove(second)) << "it has been handed out";
}

TEST(TimedQueue, CancellingTheTimerThatIsWatchedLeavesTheNextOneInItsPlace) {
  TimedQueue queue;
  // The earlier one may fire before it is cancelled on a busy machine; the later one comes in either case.
  const auto earlier = queue.postAfter(10ms, [] {});
  queue.postAfter(20ms, [&] { queue.close(); });
  std::thread taker([&] {
    while (auto work = queue.take()) (*work)();
  });
  queue.cancelTimer(earlier);
  taker.join();
  EXPECT_FALSE(queue.take());
}

TEST(TimedQueue, WorkMayPostAndCancelFromItsDestructor) {
  TimedQueue queue;
  struct Poster {
    explicit Poster(TimedQueue& queueToUse) : queue(queueToUse) {}
    ~Poster() {
      queue.post([] {});
      queue.cancelTimer(queue.postAfter(1h, [] {}));
    }
    Poster(const Poster&) = delete;
    Poster& operator=(const Poster&) = delete;
    TimedQueue& queue;
  };
  const auto timer = queue.postAfter(1h, [poster = std::make_shared<Poster>(queue)] {});
  queue.cancelTimer(timer);
  EXPECT_TRUE(queue.take()) << "what the cancelled work has posted";
  queue.postAfter(1h, [poster = std::make_shared<Poster>(queue)] {});
  queue.close();
  EXPECT_FALSE(queue.take());
}

/// Counts what a queue asks of its lot. Handed over to the queue, so it lives as long as that.
class CountingLot final : public ParkingLot {
 public:
  struct Counts {
    std::atomic<int> waits{0};
    std::atomic<int> wakeUps{0};
    std::atomic<int> calls{0};

    /// Until that many have gone to wait in all.
    void waitForWaits(int wanted) const {
      for (int now = waits.load(); now < wanted; now = waits.load()) waits.wait(now);
    }
  };

  explicit CountingLot(Counts& counts) : counts_(counts) {}
  void wait() override {
    counts_.waits.fetch_add(1);
    counts_.waits.notify_all();
    lot_->wait();
    counts_.wakeUps.fetch_add(1);
  }
  void call() override {
    counts_.calls.fetch_add(1);
    lot_->call();
  }
  void setAlarm(std::optional<MonotonicTime> time) override { lot_->setAlarm(time); }

 private:
  Counts& counts_;
  std::unique_ptr<ParkingLot> lot_ = makeParkingLot();
};

/// Three takers that have all gone to wait.
class IdleTakers : public testing::Test {
 protected:
  static constexpr int count = 3;

  IdleTakers() {
    for (int index = 0; index < count; ++index) {
      takers_.emplace_back([this] {
        while (auto work = queue.take()) (*work)();
      });
    }
    counts.waitForWaits(count);
  }
  ~IdleTakers() override { end(); }
  void end() {
    queue.close();
    for (auto& taker : takers_) taker.join();
    takers_.clear();
  }

  CountingLot::Counts counts;
  TimedQueue queue{std::make_unique<CountingLot>(counts)};

 private:
  std::vector<std::thread> takers_;
};

TEST_F(IdleTakers, ATimerWakesOneAndTheWatchIsHandedToNobody) {
  constexpr int timers = 20;
  for (int fired = 0; fired < timers; ++fired) {
    std::latch done(1);
    queue.postAfter(1ms, [&] { done.count_down(); });
    done.wait();
    counts.waitForWaits(count + fired + 1);
  }
  EXPECT_EQ(counts.wakeUps, timers);
  EXPECT_EQ(counts.calls, 0);
}

TEST_F(IdleTakers, APostFromElsewhereCallsOne) {
  std::latch done(1);
  queue.post([&] { done.count_down(); });
  done.wait();
  counts.waitForWaits(count + 1);
  EXPECT_EQ(counts.calls, 1);
  EXPECT_EQ(counts.wakeUps, 1);
}

TEST_F(IdleTakers, WhatWorkPostsIsLeftToItsOwnTakerAndNobodyIsCalled) {
  std::latch done(1);
  int left = 10;
  std::function<void()> next = [&] {
    if (--left > 0) {
      queue.post(next);
    } else {
      done.count_down();
    }
  };
  queue.postAfter(1ms, next);
  done.wait();
  EXPECT_EQ(counts.calls, 0);
  end();
}

TEST_F(IdleTakers, WorkThatWaitsForWhatItHasPostedDoesNotWaitForEver) {
  std::latch outer(1);
  queue.post([&] {
    const auto inner = std::make_shared<std::latch>(1);
    queue.post([inner] { inner->count_down(); });
    inner->wait();
    outer.count_down();
  });
  outer.wait();
  end();
}

TEST_F(IdleTakers, WorkThatBlocksHoldsUpNeitherTimersNorPosts) {
  std::latch blocked(1);
  std::latch done(2);
  queue.postAfter(1ms, [&] { done.wait(); });
  queue.postAfter(1ms, [&] { done.count_down(); });
  queue.postAfter(2ms, [&] {
    queue.post([&] { done.count_down(); });
    blocked.count_down();
    done.wait();
  });
  blocked.wait();
  done.wait();
  end();
}

TEST_F(IdleTakers, SeveralPiecesOfWorkThatBlockRunSideBySide) {
  std::latch together(count);
  std::latch done(count);
  for (int index = 0; index < count; ++index) {
    queue.post([&] {
      together.arrive_and_wait();
      done.count_down();
    });
  }
  done.wait();
  end();
}

TEST_F(IdleTakers, TheEndReachesAllOfThem) {
  end();
  EXPECT_EQ(counts.wakeUps, count);
}

/// What a queue without a waiting taker says of help.
class HelpDue : public testing::Test {
 protected:
  HelpDue() {
    queue.onHelpDue([this](std::optional<MonotonicTime> time) { told.push_back(time); });
  }
  static MonotonicTime now() { return std::chrono::steady_clock::now(); }

  TimedQueue queue;
  std::vector<std::optional<MonotonicTime>> told;
};

TEST_F(HelpDue, WorkThatNobodyTakesIsToldOfOnce) {
  const auto before = now();
  queue.post([] {});
  queue.post([] {});
  ASSERT_EQ(told.size(), 1U);
  EXPECT_GE(told[0], before + TimedQueue::helpPatience);
  EXPECT_LE(told[0], now() + TimedQueue::helpPatience);
}

TEST_F(HelpDue, WorkThatIsTakenUpNeedsNone) {
  queue.post([] {});
  EXPECT_TRUE(queue.take());
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[1], std::nullopt);
}

TEST_F(HelpDue, WhatIsLeftBehindNeedsItAnewWithEveryPieceThatIsTakenUp) {
  queue.post([] {});
  queue.post([] {});
  const auto before = now();
  EXPECT_TRUE(queue.take());
  ASSERT_EQ(told.size(), 2U);
  EXPECT_GE(told[1], before + TimedQueue::helpPatience);
}

TEST_F(HelpDue, TheNextTimerNeedsItWhileWorkIsDone) {
  const auto before = now();
  queue.postAfter(1h, [] {});
  queue.postAfter(2h, [] {});
  queue.post([] {});
  EXPECT_TRUE(queue.take());
  EXPECT_GE(told.back(), before + 1h + TimedQueue::helpPatience);
  EXPECT_LT(told.back(), before + 2h);
}

TEST_F(HelpDue, ATakerThatWaitsNeedsNone) {
  queue.postAfter(1ms, [this] { queue.close(); });
  std::thread taker([this] {
    while (auto work = queue.take()) (*work)();
  });
  taker.join();
  EXPECT_EQ(told.back(), std::nullopt);
}

TEST(ThreadPoolExecutor, AWatchOfADistantTimerDoesNotHoldUpPostsOrNearerTimers) {
  constexpr int count = 200;
  std::latch done(count);
  ThreadPoolExecutor pool(3);
  pool.postAfter(1h, [] {});
  for (int index = 0; index < count; ++index) {
    if (index % 2 == 0) {
      pool.post([&] { done.count_down(); });
    } else {
      pool.postAfter(std::chrono::microseconds(index * 50), [&] { done.count_down(); });
    }
  }
  done.wait();
}

TEST(ThreadPoolExecutor, TheEndDropsWhatWaitsAndReleasesIt) {
  auto held = std::make_shared<int>(0);
  const std::weak_ptr<int> watch = held;
  ThreadPoolExecutor pool(2);
  pool.postAfter(1h, [held = std::move(held)] {});
  pool.shutDown();
  EXPECT_TRUE(watch.expired());
  pool.post([] { FAIL(); });
  EXPECT_EQ(pool.postAfter(0ms, [] { FAIL(); }), 0U) << "the number of no timer";
}

}  // namespace
}  // namespace quillmere
