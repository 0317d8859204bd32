// A tick a second.
#include "views/shared/SecondTicker.h"

#include <chrono>
#include <utility>

namespace quillmere {

SecondTicker::SecondTicker(const Runtime& runtime, std::function<void()> tick)
    : main_(runtime.main), tick_(std::move(tick)) {}

SecondTicker::~SecondTicker() { setOn(false); }

void SecondTicker::setOn(bool isOn) {
  if (isOn == this->isOn()) return;
  if (isOn) {
    schedule();
  } else {
    main_.cancelTimer(std::exchange(timer_, 0));
  }
}

void SecondTicker::schedule() {
  timer_ = main_.postAfter(std::chrono::seconds(1), [this] {
    // First the next one: the tick may turn the ticker off.
    schedule();
    tick_();
  });
}

}  // namespace quillmere
