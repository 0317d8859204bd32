// A main loop without a window system: the thread that calls run() is the executor's thread.
#pragma once

#include <atomic>
#include <thread>

#include "runtime/TimedQueue.h"

namespace quillmere {

class LoopExecutor final : public Executor {
 public:
  /// The constructing thread counts as the executor's until run() says otherwise.
  LoopExecutor();
  ~LoopExecutor() override;
  void post(Work work) override;
  TimerID postAfter(Duration delay, Work work) override;
  void cancelTimer(TimerID timer) override;
  [[nodiscard]] bool isCurrent() const override;

  /// Runs work on the calling thread until stop(). Not to be called twice.
  void run();
  /// Ends run() and drops what is queued. [any]
  void stop();

 private:
  TimedQueue queue_;
  std::atomic<std::thread::id> thread_;
};

}  // namespace quillmere
