// The system has no thread to give for a while: nothing ends, and nothing that was asked for is lost.
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>
#include <latch>
#include <memory>
#include <semaphore>
#include <utility>

#include "platform/linux/LinuxThreads.h"
#include "platform/linux/SqliteUserDefaults.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/Clocks.h"
#include "runtime/HostThreads.h"
#include "runtime/SerialQueue.h"
#include "runtime/ThreadAlarm.h"
#include "runtime/ThreadPoolExecutor.h"
#include "tests/platform/linux/support/TemporaryFolder.h"

namespace quillmere {
namespace {

/// While it stands each new thread asks for a stack that no machine has room for.
class NoThreads {
 public:
  NoThreads() {
    pthread_getattr_default_np(&before_);
    pthread_attr_t none;
    pthread_getattr_default_np(&none);
    pthread_attr_setstacksize(&none, std::size_t{1} << 50U);
    pthread_setattr_default_np(&none);
    pthread_attr_destroy(&none);
  }
  ~NoThreads() {
    pthread_setattr_default_np(&before_);
    pthread_attr_destroy(&before_);
  }
  NoThreads(const NoThreads&) = delete;
  NoThreads& operator=(const NoThreads&) = delete;

 private:
  pthread_attr_t before_{};
};

/// One for each time that an alarm has rung to its end.
std::counting_semaphore<> rings(0);

std::unique_ptr<ThreadAlarm> makeCountedAlarm(std::function<void()> ring) {
  return linuxThreads().makeAlarm([ring = std::move(ring)] {
    ring();
    rings.release();
  });
}

class ScarceThreads : public ::testing::Test {
 protected:
  ScarceThreads() {
    auto threads = linuxThreads();
    threads.makeAlarm = makeCountedAlarm;
    installHostThreads(threads);
    // The host's loop is there from the start of the program.
    alarm_ = linuxThreads().makeAlarm([] {});
  }
  ~ScarceThreads() override { installHostThreads({}); }

 private:
  std::unique_ptr<ThreadAlarm> alarm_;
};

TEST_F(ScarceThreads, WhatIsQueuedMeanwhileIsDoneWhenThereIsAThread) {
  const auto queue = makeThreadSerialQueue("app.quillmere.test");
  std::latch done(2);
  {
    const NoThreads none;
    queue->async([&] { done.count_down(); });
    queue->async([&] { done.count_down(); });
  }
  done.wait();
}

TEST_F(ScarceThreads, AQueueThatGoesBeforeThereIsOneDoesWhatIsLeftItself) {
  bool isDone = false;
  bool wasOnQueue = false;
  {
    const auto queue = makeThreadSerialQueue("app.quillmere.test");
    const NoThreads none;
    queue->async([&] {
      wasOnQueue = queue->isCurrent();
      queue->async([&] { isDone = true; });
    });
  }
  EXPECT_TRUE(isDone);
  EXPECT_TRUE(wasOnQueue);
}

TEST_F(ScarceThreads, HelpThatCannotComeNowComesLater) {
  ThreadPoolExecutor pool(2);
  std::latch isHeld(1);
  std::latch holds(1);
  std::latch ended(1);
  pool.post([&] {
    isHeld.count_down();
    holds.wait();
    ended.count_down();
  });
  isHeld.wait();
  {
    const NoThreads none;
    while (rings.try_acquire()) {
    }
    pool.post([&] { holds.count_down(); });
    // It has looked for help, in vain.
    rings.acquire();
    EXPECT_FALSE(holds.try_wait());
  }
  ended.wait();
}

TEST_F(ScarceThreads, SettingsThatAreChangedMeanwhileAreStoredWhenThereIsAThreadOrAtTheEnd) {
  const support::TemporaryFolder folder;
  const auto file = folder.path("defaults.sqlite");
  const SystemClocks clocks;
  RecordingLogSink log;
  {
    const NoThreads none;
    SqliteUserDefaults defaults(file, clocks, log);
    defaults.set("a", 1.0);
  }
  {
    SqliteUserDefaults defaults(file, clocks, log);
    EXPECT_EQ(defaults.object("a"), DefaultsValue(1.0));
    {
      const NoThreads none;
      defaults.set("b", 2.0);
    }
    defaults.flush();
  }
  SqliteUserDefaults defaults(file, clocks, log);
  EXPECT_EQ(defaults.object("b"), DefaultsValue(2.0));
}

}  // namespace
}  // namespace quillmere
