// A poll and its sleep: when it looks, what it tells, who wakes it, and who takes it along.
#include "runtime/Poll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "runtime/ThreadPoolExecutor.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr Duration period = 150ms;

class PollTest : public testing::Test {
 protected:
  ~PollTest() override { time.shutDown(); }

  long long millis() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.monotonicNow().time_since_epoch()).count();
  }
  Stream<int> polled() {
    return Stream<int>::produce(time.background(),
                                [this](TaskContext& task, Stream<int>::Writer& writer) -> Async<void> {
                                  const ChangeWatch watch(sources, asFarAsTold);
                                  co_await poll<int>(task, writer, period, watch, [this] {
                                    looks.push_back(millis());
                                    if (duringLook) duringLook();
                                    return value;
                                  });
                                });
  }
  void consume(Pace pace) {
    stream.emplace(polled());
    stream->setPace(pace);
    startTask(time.main(), [this](TaskContext&) -> Async<void> {
      while (const auto element = co_await stream->next()) told.emplace_back(millis(), *element);
    });
    time.runUntilIdle();
  }

  VirtualTime time;
  ChangeSignal signal;
  ChangeSources sources{&signal};
  ChangeSources asFarAsTold;
  int value = 1;
  std::function<void()> duringLook;
  std::optional<Stream<int>> stream;
  std::vector<long long> looks;
  std::vector<std::pair<long long, int>> told;
};

TEST_F(PollTest, AConsumerThatLooksGetsAnElementEachPeriodChangedOrNot) {
  consume(Pace::everyPeriod);
  time.advance(449ms);
  value = 2;
  time.advance(1ms);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(150, 1), Pair(300, 1), Pair(450, 2)));
}

TEST_F(PollTest, AConsumerThatWantsChangesGetsTheFirstElementAtOnceAndNobodyLooksAgainInVain) {
  consume(Pace::whenChanged);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1)));
  time.advance(10h);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1)));
  EXPECT_THAT(looks, ElementsAre(0));
}

TEST_F(PollTest, AChangeIsFoundWhenThePollWouldHaveLookedAnyway) {
  consume(Pace::whenChanged);
  time.advance(1010ms);
  value = 2;
  signal.raise();
  time.advance(39ms);
  EXPECT_THAT(looks, ElementsAre(0));
  time.advance(1ms);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(1050, 2)));
  time.advance(1h);
  EXPECT_THAT(looks, ElementsAre(0, 1050));
}

TEST_F(PollTest, AChangeAtTheTimeOfALookIsFoundAtTheNextOne) {
  consume(Pace::whenChanged);
  time.advance(300ms);
  signal.raise();
  time.advance(1h);
  EXPECT_THAT(looks, ElementsAre(0, 450));
}

TEST_F(PollTest, ManyChangesInOnePeriodAreOneLook) {
  consume(Pace::whenChanged);
  for (int change = 0; change < 10; ++change) {
    time.advance(10ms);
    ++value;
    signal.raise();
  }
  time.advance(1h);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(150, 11)));
}

TEST_F(PollTest, WhatIsRaisedDuringALookCallsForAnother) {
  duringLook = [this] {
    if (looks.size() == 1) signal.raise();
  };
  consume(Pace::whenChanged);
  time.advance(1h);
  EXPECT_THAT(looks, ElementsAre(0, 150));
}

TEST_F(PollTest, AnElementThatWasCalledForIsToldThoughItIsTheSame) {
  consume(Pace::whenChanged);
  time.advance(10ms);
  signal.raise();
  time.advance(1h);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(150, 1)));
}

TEST_F(PollTest, WhatGoesStaleIsLookedAtTheFirstTimeAfterThatAndToldIfItDiffers) {
  signal.setStaleAt(time.monotonicNow() + 1s);
  consume(Pace::whenChanged);
  duringLook = [this] {
    signal.setStaleAt(time.monotonicNow() + 1s);
    if (looks.size() == 3) value = 2;
  };
  time.advance(3200ms);
  EXPECT_THAT(looks, ElementsAre(0, 1050, 2100, 3150));
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(2100, 2)));
}

TEST_F(PollTest, ALookThatFallsOnTheVeryTimeAtWhichASourceGoesStaleIsMade) {
  signal.setStaleAt(time.monotonicNow() + 300ms);
  consume(Pace::whenChanged);
  duringLook = [this] { signal.setStaleAt(std::nullopt); };
  time.advance(1h);
  EXPECT_THAT(looks, ElementsAre(0, 300));
}

TEST_F(PollTest, AChangeBeforeASourceGoesStaleIsNotKeptWaitingForThat) {
  signal.setStaleAt(time.monotonicNow() + 1h);
  consume(Pace::whenChanged);
  time.advance(200ms);
  value = 2;
  signal.raise();
  time.advance(100ms);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(300, 2)));
}

TEST_F(PollTest, ASourceThatCannotTellIsAskedEachPeriod) {
  sources = {&signal, &ChangeSignal::absent()};
  consume(Pace::whenChanged);
  time.advance(299ms);
  value = 2;
  time.advance(151ms);
  EXPECT_THAT(looks, ElementsAre(0, 150, 300, 450));
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(300, 2)));
}

TEST_F(PollTest, ASourceThatCountsAsFarAsItTellsIsNotAskedWhenItGoesStaleUnlessItNeverTells) {
  ChangeSignal lookedFor;
  lookedFor.setStaleAt(time.monotonicNow() + 1s);
  asFarAsTold = {&lookedFor};
  consume(Pace::whenChanged);
  time.advance(5s);
  EXPECT_THAT(looks, ElementsAre(0));
  lookedFor.raise();
  time.advance(1s);
  EXPECT_THAT(looks, ElementsAre(0, 5100));
  stream.reset();
  time.runUntilIdle();
  looks.clear();
  asFarAsTold = {&ChangeSignal::absent()};
  consume(Pace::whenChanged);
  time.advance(3 * period);
  EXPECT_EQ(looks.size(), 4U);
}

TEST_F(PollTest, AConsumerThatWantsEveryPeriodAgainGetsItAtTheTimesOfBefore) {
  consume(Pace::whenChanged);
  time.advance(1010ms);
  stream->setPace(Pace::everyPeriod);
  time.advance(200ms);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(1050, 1), Pair(1200, 1)));
  stream->setPace(Pace::whenChanged);
  time.advance(1h);
  EXPECT_EQ(told.size(), 3U);
}

TEST_F(PollTest, AnAskerGetsTheNextElementAndAsksNobodyWhenTheStreamHasGone) {
  consume(Pace::whenChanged);
  const auto ask = stream->asker();
  time.advance(1010ms);
  ask();
  time.advance(1h);
  EXPECT_THAT(told, ElementsAre(Pair(0, 1), Pair(1050, 1)));
  stream.reset();
  ask();
  time.advance(1h);
  EXPECT_EQ(looks.size(), 2U);
}

TEST_F(PollTest, AStreamThatIsLetGoEndsItsSleepingPoll) {
  auto alive = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = alive;
  {
    auto held = Stream<int>::produce(
        time.background(),
        [this, kept = std::move(alive)](TaskContext& task, Stream<int>::Writer& writer) -> Async<void> {
          const ChangeWatch watch(sources);
          co_await poll<int>(task, writer, period, watch, [] { return 1; });
        });
    held.setPace(Pace::whenChanged);
    time.runUntilIdle();
    EXPECT_FALSE(watched.expired());
  }
  time.runUntilIdle();
  EXPECT_TRUE(watched.expired());
  signal.raise();
}

TEST_F(PollTest, ASleepingPollGoesWithItsExecutorAndNotWithTheSignal) {
  auto alive = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = alive;
  startTask(time.background(), [this, held = std::move(alive)](TaskContext& task) -> Async<void> {
    ChangeWatch watch(sources);
    watch.beginLook();
    co_await sleepUntilChanged(task, period, watch);
    ADD_FAILURE() << "nobody has raised anything";
  });
  time.runUntilIdle();
  EXPECT_FALSE(watched.expired());
  time.shutDown();
  EXPECT_TRUE(watched.expired());
  signal.raise();
}

TEST(PollOnAPool, ARaiseFromAnyThreadIsFoundAndNoneIsLost) {
  ChangeSignal signal;
  std::atomic<int> value{0};
  std::atomic<int> seen{0};
  std::atomic<int> finished{0};
  constexpr int last = 200;
  ThreadPoolExecutor pool(2);
  startTask(pool, [&](TaskContext& task) -> Async<void> {
    ChangeWatch watch({&signal});
    while (seen != last) {
      watch.beginLook();
      seen = value.load();
      if (seen != last) co_await sleepUntilChanged(task, 1ms, watch);
    }
    ++finished;
  });
  std::thread raiser([&] {
    for (int number = 1; number <= last; ++number) {
      value = number;
      signal.raise();
      // From the moment that it is asleep again, now and then.
      while (number % 20 == 0 && seen != number) std::this_thread::yield();
    }
  });
  raiser.join();
  while (finished == 0) std::this_thread::yield();
  EXPECT_EQ(seen, last);
}

}  // namespace
}  // namespace quillmere
