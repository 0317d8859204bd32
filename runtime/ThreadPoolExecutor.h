// The background pool: a few threads that share one queue.
#pragma once

#include <chrono>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "runtime/TimedQueue.h"

namespace quillmere {

class ThreadAlarm;

/// Where the host has thread alarms, one thread stays, and others come when work has to wait because those that are
/// there are held up; they go when they have been there for a while. Elsewhere all are there all the time.
class ThreadPoolExecutor final : public Executor {
 public:
  /// What holds threads up comes in bursts: those that have come stay for a while.
  explicit ThreadPoolExecutor(std::size_t threadCount, Duration helpStays = std::chrono::seconds(5));
  ~ThreadPoolExecutor() override;
  void post(Work work) override;
  TimerID postAfter(Duration delay, Work work) override;
  void cancelTimer(TimerID timer) override;
  [[nodiscard]] bool isCurrent() const override;

  /// Drops what is queued, now and later, and waits for what runs. Called by the destructor. [any but background]
  void shutDown();

 private:
  void start();
  void run(std::list<std::thread>::iterator self);
  void bringHelp();
  bool leave(std::list<std::thread>::iterator self);

  const std::size_t most_;
  const Duration helpStays_;
  TimedQueue queue_;
  std::mutex mutex_;
  // Under the mutex.
  std::list<std::thread> threads_;
  /// Those that have left.
  std::list<std::thread> ended_;
  bool isShutDown_ = false;
  std::unique_ptr<ThreadAlarm> alarm_;
};

}  // namespace quillmere
