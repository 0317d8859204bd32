// A tick a second, for countdowns that somebody looks at.
#pragma once

#include <functional>

#include "runtime/Runtime.h"

namespace quillmere {

/// [main] Off at first.
class SecondTicker {
 public:
  /// The runtime's services outlive the ticker.
  SecondTicker(const Runtime& runtime, std::function<void()> tick);
  ~SecondTicker();
  SecondTicker(const SecondTicker&) = delete;
  SecondTicker& operator=(const SecondTicker&) = delete;

  /// Ticks a second from now for the first time; one that is on goes on as it does.
  void setOn(bool isOn);
  [[nodiscard]] bool isOn() const { return timer_ != 0; }

 private:
  void schedule();

  Executor& main_;
  std::function<void()> tick_;
  /// 0 while off.
  TimerID timer_ = 0;
};

}  // namespace quillmere
