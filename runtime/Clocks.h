// Wall time and monotonic time, both injected: nothing else in the program reads a clock.
#pragma once

#include <chrono>

#include "core/Date.h"

namespace quillmere {

using Duration = std::chrono::nanoseconds;
/// Monotonic time since an arbitrary start.
using MonotonicTime = std::chrono::time_point<std::chrono::steady_clock, Duration>;

class ChangeSignal;

/// How the wall clock goes with the monotonic one until it is set. [any]
struct WallClockSetting {
  /// At the monotonic clock's beginning.
  Date start;
  /// Seconds that the wall clock has been put ahead since.
  double ahead = 0.0;

  [[nodiscard]] Date at(MonotonicTime moment) const {
    const std::chrono::duration<double> elapsed = moment.time_since_epoch();
    return start.advancedBy(elapsed.count() + ahead);
  }
};

class Clocks {
 public:
  virtual ~Clocks() = default;
  /// The wall clock; may jump in either direction. [any]
  [[nodiscard]] virtual Date now() const = 0;
  /// What it shows at which moment, as long as nobody sets it. [any]
  [[nodiscard]] virtual WallClockSetting setting() const;
  /// Raised when the wall clock has been set, or the machine has slept. One that is never raised is of a host that
  /// doesn't tell. [any]
  [[nodiscard]] virtual const ChangeSignal& settings() const;
  /// Never goes back. Whether it counts while the machine sleeps is the system's matter. [any]
  [[nodiscard]] virtual MonotonicTime monotonicNow() const = 0;
  /// Blocks the calling thread. [any, never main]
  virtual void sleepThread(Duration duration) = 0;
};

/// The machine's own clocks.
class SystemClocks final : public Clocks {
 public:
  [[nodiscard]] Date now() const override;
  [[nodiscard]] MonotonicTime monotonicNow() const override;
  void sleepThread(Duration duration) override;
};

}  // namespace quillmere
