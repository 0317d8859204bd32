// Work that is ready and work that waits for its time: the store behind every threaded executor.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "runtime/TimerStore.h"

namespace quillmere {

/// Any number of threads put and take. At most one taker keeps watch over the next timer, the others sleep until told.
class TimedQueue {
 public:
  void post(Work work);
  TimerID postAfter(Duration delay, Work work);
  void cancelTimer(TimerID timer);
  /// Waits for the next piece of work; absent once the queue was closed.
  std::optional<Work> take();
  /// Ends all takers and drops what is queued, now and later. Work is destroyed on the calling thread.
  void close();

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Work> ready_;
  TimerStore timers_;
  bool watched_ = false;
  bool closed_ = false;
};

}  // namespace quillmere
