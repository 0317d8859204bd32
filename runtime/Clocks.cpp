// The machine's own clocks.
#include "runtime/Clocks.h"

#include <thread>

namespace quillmere {

Date SystemClocks::now() const {
  const std::chrono::duration<double> unix = std::chrono::system_clock::now().time_since_epoch();
  return Date{unix.count() - Date::referenceUnixSeconds};
}

MonotonicTime SystemClocks::monotonicNow() const { return std::chrono::steady_clock::now(); }

void SystemClocks::sleepThread(Duration duration) { std::this_thread::sleep_for(duration); }

}  // namespace quillmere
