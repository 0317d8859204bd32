// A descriptor that is readable from a time on.
#pragma once

#include <optional>

#include "Descriptor.h"
#include "runtime/Clocks.h"

namespace quillmere {

/// [any]
class TimerDescriptor {
 public:
  TimerDescriptor();
  /// Replaces the time of before; absent: never.
  void set(std::optional<MonotonicTime> time) const;
  [[nodiscard]] const Descriptor& descriptor() const { return descriptor_; }

 private:
  Descriptor descriptor_;
};

}  // namespace quillmere
