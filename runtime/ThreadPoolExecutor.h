// The background pool: a few threads that share one queue.
#pragma once

#include <cstddef>
#include <thread>
#include <vector>

#include "runtime/TimedQueue.h"

namespace quillmere {

class ThreadPoolExecutor final : public Executor {
 public:
  explicit ThreadPoolExecutor(std::size_t threadCount);
  ~ThreadPoolExecutor() override;
  void post(Work work) override;
  TimerID postAfter(Duration delay, Work work) override;
  void cancelTimer(TimerID timer) override;
  [[nodiscard]] bool isCurrent() const override;

  /// Drops what is queued, now and later, and waits for what runs. Called by the destructor. [any but background]
  void shutDown();

 private:
  TimedQueue queue_;
  std::vector<std::thread> threads_;
};

}  // namespace quillmere
