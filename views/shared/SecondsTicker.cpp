// Once a second.
#include "views/shared/SecondsTicker.h"

#include <chrono>
#include <utility>

namespace quillmere {

SecondsTicker::SecondsTicker(const Runtime& runtime, std::function<void()> tick)
    : runtime_(runtime), tick_(std::move(tick)) {}

SecondsTicker::~SecondsTicker() { setRunning(false); }

void SecondsTicker::setRunning(bool isRunning) {
  if (isRunning == this->isRunning()) return;
  if (isRunning) {
    schedule();
  } else {
    runtime_.main.cancelTimer(std::exchange(timer_, 0));
  }
}

void SecondsTicker::schedule() {
  timer_ = runtime_.main.postAfter(std::chrono::seconds(1), [this] {
    schedule();
    tick_();
  });
}

}  // namespace quillmere
