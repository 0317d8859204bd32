// A time at which somebody looks in, wherever the threads that should be there are.
#pragma once

#include <optional>

#include "runtime/Clocks.h"

namespace quillmere {

class ThreadAlarm {
 public:
  /// Waits for the ring that is under way; none comes afterwards. [any but the thread that rings]
  virtual ~ThreadAlarm() = default;
  /// It rings once at that time, unless it is set anew before; absent: not at all. Wakes nobody now. [any]
  virtual void set(std::optional<MonotonicTime> time) = 0;
};

}  // namespace quillmere
