// Wall time and monotonic time, both injected: nothing else in the program reads a clock.
#pragma once

#include <chrono>

#include "core/Date.h"

namespace quillmere {

using Duration = std::chrono::nanoseconds;
/// Monotonic time since an arbitrary start.
using MonotonicTime = std::chrono::time_point<std::chrono::steady_clock, Duration>;

class Clocks {
 public:
  virtual ~Clocks() = default;
  /// The wall clock; may jump in either direction. [any]
  [[nodiscard]] virtual Date now() const = 0;
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
