// Where the threads of a queue wait while there is nothing to do: for a call, or for a time that is no thread's own.
#pragma once

#include <memory>
#include <optional>

#include "runtime/Clocks.h"

namespace quillmere {

/// A thread that waits on a condition variable brings its own time to wake at, so that somebody has to take over the
/// watch whenever it goes to work. Here the lot keeps the time, and whoever waits may be the one that it wakes.
class ParkingLot {
 public:
  virtual ~ParkingLot() = default;
  /// Blocks until this thread is called, until the alarm, or for no reason at all. [any]
  virtual void wait() = 0;
  /// Ends the wait of one thread; where none waits, of the next that would. Several calls may become one. [any]
  virtual void call() = 0;
  /// At that time one wait ends, once. Replaces the alarm of before; absent: none. Calls of this one are the caller's
  /// to keep in order. [any]
  virtual void setAlarm(std::optional<MonotonicTime> time) = 0;
};

[[nodiscard]] std::unique_ptr<ParkingLot> makeParkingLot();

}  // namespace quillmere
