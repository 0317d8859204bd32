// Work that waits for its time, in order: what executors with an event loop of their own keep behind their lock.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <utility>

#include "runtime/Executor.h"

namespace quillmere {

/// Holds no lock and runs nothing: its owner guards it, and destroys work that it is handed after letting go of the
/// guard, since what the work holds may come back in its destructor.
class TimerStore {
 public:
  /// Timers of one time keep the order in which they were added. The number is never zero and never given twice.
  TimerID add(MonotonicTime due, Work work);
  /// Hands out the work of a timer that is dropped; empty where there is no such timer.
  [[nodiscard]] Work remove(TimerID timer);
  /// Moves what is due to the end of `ready`, the earliest first.
  void moveDue(MonotonicTime now, std::deque<Work>& ready);
  /// When the next timer is due; absent where none waits.
  [[nodiscard]] std::optional<MonotonicTime> nextDue() const;

 private:
  using Due = std::pair<MonotonicTime, TimerID>;

  std::map<Due, Work> timers_;
  std::map<TimerID, MonotonicTime> dueTimes_;
  TimerID lastTimer_ = 0;
};

}  // namespace quillmere
