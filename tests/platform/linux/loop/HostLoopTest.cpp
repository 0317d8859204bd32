// The host's loop: posts, times, descriptors, the end.
#include "platform/linux/loop/HostLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <thread>
#include <vector>

#include "../support/Patience.h"
#include "platform/linux/loop/DescriptorWatch.h"
#include "platform/linux/loop/HostTimer.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

using support::longEnough;

class Loop : public ::testing::Test {
 protected:
  Loop() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()), 0); }
  ~Loop() override {
    loop.perform([this] {
      watch.reset();
      other.reset();
      timers.clear();
    });
    close();
    ::close(ends[0]);
  }
  void close() {
    if (ends[1] >= 0) ::close(std::exchange(ends[1], -1));
  }
  void say(char word) const { EXPECT_EQ(::write(ends[1], &word, 1), 1); }
  char hear() const {
    char word = 0;
    return ::read(ends[0], &word, 1) == 1 ? word : '\0';
  }
  bool isDone() { return done.get_future().wait_for(longEnough) == std::future_status::ready; }

  HostLoop loop;
  std::array<int, 2> ends{-1, -1};
  std::promise<void> done;
  std::vector<char> order;
  // The loop's own.
  std::optional<DescriptorWatch> watch;
  std::optional<DescriptorWatch> other;
  std::vector<HostTimer> timers;
};

TEST_F(Loop, PostsOfOneThreadKeepTheirOrderAndRunOnTheLoop) {
  for (const char each : {'a', 'b', 'c'}) {
    loop.post([this, each] {
      EXPECT_TRUE(loop.isCurrent());
      order.push_back(each);
    });
  }
  loop.perform([this] { order.push_back('d'); });
  EXPECT_THAT(order, ElementsAre('a', 'b', 'c', 'd'));
  EXPECT_FALSE(loop.isCurrent());
}

TEST_F(Loop, PostsOfManyThreadsAllRunAndNeverSideBySide) {
  constexpr int count = 4;
  constexpr int each = 500;
  int ran = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < count; ++thread) {
    threads.emplace_back([&] {
      for (int number = 0; number < each; ++number) loop.post([&] { ++ran; });
    });
  }
  for (auto& thread : threads) thread.join();
  int seen = 0;
  loop.perform([&] { seen = ran; });
  EXPECT_EQ(seen, count * each);
}

TEST_F(Loop, WhatTheLoopWaitsForOfItselfRunsAtOnce) {
  loop.perform([this] {
    order.push_back('a');
    loop.perform([this] { order.push_back('b'); });
    order.push_back('c');
  });
  EXPECT_THAT(order, ElementsAre('a', 'b', 'c'));
}

TEST_F(Loop, TimersFireOnceAndNeverBeforeTheirTimes) {
  const auto start = std::chrono::steady_clock::now();
  loop.perform([&] {
    for (const auto delay : {20ms, 5ms, 10ms}) {
      timers.emplace_back(loop, [this, due = start + delay] {
        EXPECT_GE(std::chrono::steady_clock::now(), due);
        order.push_back('x');
        if (order.size() == 3) done.set_value();
      });
      timers.back().set(delay);
    }
  });
  ASSERT_TRUE(isDone());
  loop.perform([] {});
  EXPECT_EQ(order.size(), 3U);
}

TEST_F(Loop, ATimerThatIsSetAnewForgetsTheTimeBefore) {
  loop.perform([this] {
    timers.emplace_back(loop, [this] { order.push_back('x'); });
    timers.emplace_back(loop, [this] { order.push_back('y'); });
    timers.emplace_back(loop, [this] { done.set_value(); });
    timers[0].set(1ms);
    timers[0].set(1h);
    timers[1].set(1ms);
    timers[1].set(std::nullopt);
    timers[2].set(5ms);
  });
  ASSERT_TRUE(isDone());
  loop.perform([] {});
  EXPECT_TRUE(order.empty());
}

TEST_F(Loop, ATimerMaySetItselfAnewAndEndItself) {
  int fired = 0;
  loop.perform([&] {
    timers.emplace_back(loop, [&] {
      if (++fired < 3) {
        timers[0].set(1ms);
      } else {
        timers.clear();
        done.set_value();
      }
    });
    timers[0].set(0ms);
  });
  ASSERT_TRUE(isDone());
  EXPECT_EQ(fired, 3);
}

TEST_F(Loop, ADescriptorIsToldWheneverSomethingHasCome) {
  loop.perform([this] {
    watch.emplace(loop, ends[0], readable, [this](GIOCondition come) {
      EXPECT_TRUE(loop.isCurrent());
      EXPECT_EQ(come, G_IO_IN);
      order.push_back(hear());
      if (order.size() == 2) done.set_value();
    });
  });
  say('a');
  say('b');
  ASSERT_TRUE(isDone());
  EXPECT_THAT(order, ElementsAre('a', 'b'));
}

TEST_F(Loop, TheOtherEndsEndIsToldWhateverIsWanted) {
  loop.perform([this] {
    watch.emplace(loop, ends[0], GIOCondition{}, [this](GIOCondition come) {
      EXPECT_NE(come & G_IO_HUP, 0);
      watch.reset();
      done.set_value();
    });
  });
  close();
  EXPECT_TRUE(isDone());
}

TEST_F(Loop, RoomToWriteIsToldOnlyWhileItIsWanted) {
  int told = 0;
  loop.perform([&] { watch.emplace(loop, ends[0], readable, [&](GIOCondition) { ++told; }); });
  loop.perform([] {});
  EXPECT_EQ(told, 0);
  loop.perform([&] {
    watch.emplace(loop, ends[0], readableOrWritable, [&](GIOCondition come) {
      EXPECT_EQ(come, G_IO_OUT);
      ++told;
      watch->want(readable);
      done.set_value();
    });
  });
  ASSERT_TRUE(isDone());
  loop.perform([] {});
  loop.perform([] {});
  EXPECT_EQ(told, 1);
}

TEST_F(Loop, AWatchMayEndItselfAndWhatItHoldsStaysUntilItHasReturned) {
  const auto held = std::make_shared<int>(7);
  loop.perform([&] {
    watch.emplace(loop, ends[0], readable, [this, kept = held](GIOCondition) {
      watch.reset();
      EXPECT_EQ(*kept, 7);
      order.push_back('x');
      done.set_value();
    });
  });
  say('a');
  ASSERT_TRUE(isDone());
  loop.perform([] {});
  EXPECT_THAT(order, ElementsAre('x'));
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(Loop, AWatchThatAnotherOneEndsInTheSameTurnIsNotTold) {
  loop.perform([this] {
    watch.emplace(loop, ends[0], readable, [this](GIOCondition) {
      order.push_back('x');
      other.reset();
      watch.reset();
      done.set_value();
    });
    other.emplace(loop, ends[0], readable, [this](GIOCondition) { order.push_back('y'); });
    // Both are ready at the next turn.
    say('a');
  });
  ASSERT_TRUE(isDone());
  loop.perform([] {});
  EXPECT_THAT(order, ElementsAre('x'));
}

/// A source that is asked in every turn of the loop and never ready.
GSource* turnCounter(int& turns) {
  struct Counter {
    GSource source;
    int* turns;
  };
  static GSourceFuncs functions{[](GSource* source, gint* /*timeout*/) -> gboolean {
                                  ++*reinterpret_cast<Counter*>(source)->turns;
                                  return FALSE;
                                },
                                nullptr,
                                [](GSource*, GSourceFunc, gpointer) -> gboolean { return G_SOURCE_CONTINUE; },
                                nullptr,
                                nullptr,
                                nullptr};
  auto* source = g_source_new(&functions, sizeof(Counter));
  reinterpret_cast<Counter*>(source)->turns = &turns;
  return source;
}

TEST_F(Loop, ItSleepsFromOneTimeToTheNext) {
  int turns = 0;
  LoopSource counter(turnCounter(turns));
  loop.perform([&] {
    watch.emplace(loop, ends[0], readable, [](GIOCondition) {});
    timers.emplace_back(loop, [] {});
    timers.emplace_back(loop, [this] { done.set_value(); });
    timers[0].set(1h);
    timers[1].set(100ms);
    g_source_attach(counter.get(), loop.context());
  });
  ASSERT_TRUE(isDone());
  int seen = 0;
  loop.perform([&] {
    seen = turns;
    counter.reset();
  });
  EXPECT_LE(seen, 4) << "one to fall asleep, one for the time, two for the question";
}

TEST(HostLoop, TheEndDropsWhatWasPostedLaterAndWaitsForWhatComesBack) {
  std::atomic<bool> hasReturned = false;
  std::thread elsewhere;
  {
    HostLoop loop;
    loop.perform([&] {
      loop.expectReturn();
      elsewhere = std::thread([&] {
        std::this_thread::yield();
        loop.post([&] {
          hasReturned = true;
          loop.noteReturn();
        });
      });
    });
  }
  EXPECT_TRUE(hasReturned);
  elsewhere.join();
}

TEST(HostLoop, TheProcessHasOneForAsLongAsSomebodyHoldsIt) {
  auto first = HostLoop::ofProcess();
  const std::weak_ptr<HostLoop> gone = first;
  EXPECT_EQ(HostLoop::ofProcess(), first);
  first.reset();
  EXPECT_TRUE(gone.expired());
  auto next = HostLoop::ofProcess();
  std::promise<void> ran;
  next->post([&] { ran.set_value(); });
  EXPECT_EQ(ran.get_future().wait_for(longEnough), std::future_status::ready);
}

TEST(HostLoopDeathTest, ItsThreadCannotEndIt) {
  EXPECT_DEATH(
      {
        auto loop = HostLoop::ofProcess();
        auto* raw = loop.get();
        raw->perform([&] { loop.reset(); });
      },
      "ended on its own thread");
}

}  // namespace
}  // namespace quillmere
