// The machine's own clocks.
#include "runtime/Clocks.h"

#include <thread>

#include "runtime/ChangeSignal.h"

namespace quillmere {

WallClockSetting Clocks::setting() const {
  const std::chrono::duration<double> elapsed = monotonicNow().time_since_epoch();
  return {now().advancedBy(-elapsed.count())};
}

const ChangeSignal& Clocks::settings() const {
  static const ChangeSignal untold;
  return untold;
}

Date SystemClocks::now() const {
  const std::chrono::duration<double> unix = std::chrono::system_clock::now().time_since_epoch();
  return Date{unix.count() - Date::referenceUnixSeconds};
}

MonotonicTime SystemClocks::monotonicNow() const { return std::chrono::steady_clock::now(); }

void SystemClocks::sleepThread(Duration duration) { std::this_thread::sleep_for(duration); }

}  // namespace quillmere
