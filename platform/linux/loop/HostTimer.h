// One time to come, on the host's loop.
#pragma once

#include <functional>
#include <optional>

#include "../loop/LoopSource.h"
#include "runtime/Clocks.h"

namespace quillmere {

class HostLoop;

/// [host]
class HostTimer {
 public:
  /// `fire` may set the timer anew, or end it.
  HostTimer(HostLoop& loop, std::function<void()> fire);
  /// Fires once when the time has passed, to a millisecond and never before; replaces what was set; absent: never.
  void set(std::optional<Duration> delay);

 private:
  LoopSource source_;
};

}  // namespace quillmere
