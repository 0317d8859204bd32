// Where work runs: the main thread's loop, the background pool, or a hand-cranked stand-in for either.
#pragma once

#include <cstdint>
#include <functional>

#include "runtime/Clocks.h"

namespace quillmere {

using Work = std::function<void()>;
using TimerID = std::uint64_t;

class Executor {
 public:
  virtual ~Executor() = default;
  /// Runs `work` later, in the order of the posts (on a pool: starts them in that order). [any]
  virtual void post(Work work) = 0;
  /// Runs `work` once `delay` of monotonic time has passed; a delay of zero or less still goes through the queue. [any]
  virtual TimerID postAfter(Duration delay, Work work) = 0;
  /// Drops a timer that has not fired; an unknown or finished one is ignored. The work is destroyed, not run. [any]
  virtual void cancelTimer(TimerID timer) = 0;
  /// The time that its timers go by. [any]
  [[nodiscard]] virtual MonotonicTime now() const { return std::chrono::steady_clock::now(); }
  /// Whether the caller runs on this executor. [any]
  [[nodiscard]] virtual bool isCurrent() const = 0;
};

}  // namespace quillmere
