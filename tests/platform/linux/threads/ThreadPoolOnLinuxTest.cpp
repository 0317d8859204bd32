// The pool with the kernel's alarm: one thread while it is idle, and others when that one is held up.
#include <gtest/gtest.h>

#include <future>
#include <latch>
#include <memory>
#include <thread>

#include "platform/linux/LinuxThreads.h"
#include "runtime/ThreadPoolExecutor.h"

namespace quillmere {
namespace {

using namespace std::chrono_literals;

/// Tells when the thread that has asked for it has ended.
struct Farewell {
  ~Farewell() {
    if (told) told->set_value();
  }
  std::shared_ptr<std::promise<void>> told;
};
thread_local Farewell farewell;

class PoolOnLinux : public ::testing::Test {
 protected:
  PoolOnLinux() { installHostThreads(linuxThreads()); }
  ~PoolOnLinux() override { installHostThreads({}); }
};

TEST_F(PoolOnLinux, WorkThatIsHeldUpHoldsUpNoPost) {
  ThreadPoolExecutor pool(2);
  std::latch done(1);
  std::latch ended(1);
  pool.post([&] {
    done.wait();
    ended.count_down();
  });
  pool.post([&] { done.count_down(); });
  ended.wait();
}

TEST_F(PoolOnLinux, WorkThatIsHeldUpHoldsUpNoTimer) {
  ThreadPoolExecutor pool(2);
  std::latch done(1);
  std::latch ended(1);
  // Before, so that it is known when the work is taken up; and from within, while nobody else is there.
  pool.postAfter(30ms, [&] {});
  pool.post([&] {
    pool.postAfter(5ms, [&] { done.count_down(); });
    done.wait();
    ended.count_down();
  });
  ended.wait();
}

TEST_F(PoolOnLinux, WorkThatWaitsForWhatItHasPostedDoesNotWaitForEver) {
  ThreadPoolExecutor pool(2);
  std::latch outer(1);
  pool.post([&] {
    std::latch inner(1);
    pool.post([&] { inner.count_down(); });
    inner.wait();
    outer.count_down();
  });
  outer.wait();
}

TEST_F(PoolOnLinux, NoMoreComeThanThereMayBe) {
  ThreadPoolExecutor pool(3);
  std::latch together(3);
  std::latch ended(3);
  for (int index = 0; index < 3; ++index) {
    pool.post([&] {
      together.arrive_and_wait();
      ended.count_down();
    });
  }
  ended.wait();
}

TEST_F(PoolOnLinux, HelpGoesAfterAWhileAndTheLastOneStays) {
  ThreadPoolExecutor pool(2, 10ms);
  const auto gone = std::make_shared<std::promise<void>>();
  std::latch both(2);
  for (int index = 0; index < 2; ++index) {
    pool.post([&, index] {
      if (index == 0) farewell.told = gone;
      both.arrive_and_wait();
      if (index == 1) farewell.told = gone;
    });
  }
  // Whichever of the two it is that goes.
  gone->get_future().wait();
  std::promise<void> stays;
  pool.post([&] {
    farewell.told = nullptr;
    stays.set_value();
  });
  stays.get_future().wait();
}

TEST_F(PoolOnLinux, HelpMayBeOnItsWayWhenItEnds) {
  for (int round = 0; round < 20; ++round) {
    std::latch done(1);
    std::latch isHeldUp(1);
    ThreadPoolExecutor pool(2, 0ms);
    pool.post([&] {
      isHeldUp.count_down();
      done.wait();
    });
    pool.post([] {});
    isHeldUp.wait();
    // The time at which help comes is about now.
    std::thread end([&, at = std::chrono::steady_clock::now() + TimedQueue::helpPatience] {
      while (std::chrono::steady_clock::now() < at) std::this_thread::yield();
      done.count_down();
    });
    end.join();
    pool.shutDown();
  }
}

}  // namespace
}  // namespace quillmere
