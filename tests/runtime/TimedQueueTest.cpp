// Timers and the queue on them: order, dropping, takers that share one watch, the end.
#include "runtime/TimedQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
