// Calls something once a second for as long as it runs: what counts time on screen.
#pragma once

#include <functional>

#include "runtime/Runtime.h"

namespace quillmere {

/// [main]
class SecondsTicker {
 public:
  /// `tick` may stop the ticker. The runtime's services outlive it.
  SecondsTicker(const Runtime& runtime, std::function<void()> tick);
  ~SecondsTicker();
  SecondsTicker(const SecondsTicker&) = delete;
  SecondsTicker& operator=(const SecondsTicker&) = delete;

  /// The first tick comes a second after the start.
  void setRunning(bool isRunning);
  [[nodiscard]] bool isRunning() const { return timer_ != 0; }

 private:
  void schedule();

  Runtime runtime_;
  std::function<void()> tick_;
  /// 0 while it doesn't run.
  TimerID timer_ = 0;
};

}  // namespace quillmere
