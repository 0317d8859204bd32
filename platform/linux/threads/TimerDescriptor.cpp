// The kernel's timer.
#include "threads/TimerDescriptor.h"

#include <sys/timerfd.h>

#include <algorithm>
#include <cstdint>

namespace quillmere {

TimerDescriptor::TimerDescriptor() : descriptor_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {}

void TimerDescriptor::set(std::optional<MonotonicTime> time) const {
  itimerspec value{};
  if (time) {
    // A time of zero would mean none at all.
    const std::int64_t nanos = std::max<std::int64_t>(1, time->time_since_epoch().count());
    value.it_value.tv_sec = static_cast<time_t>(nanos / 1'000'000'000);
    value.it_value.tv_nsec = static_cast<long>(nanos % 1'000'000'000);
  }
  timerfd_settime(descriptor_.number(), TFD_TIMER_ABSTIME, &value, nullptr);
}

}  // namespace quillmere
