// One drain at a time: whoever finds none running starts it.
#include "runtime/OrderedBackground.h"

#include <utility>

namespace quillmere {

void OrderedBackground::post(Work work) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(work));
    if (draining_) return;
    draining_ = true;
  }
  background_.post([self = shared_from_this()] { self->drain(); });
}

void OrderedBackground::drain() {
  while (true) {
    Work next;
    {
      const std::lock_guard lock(mutex_);
      if (waiting_.empty()) {
        draining_ = false;
        return;
      }
      next = std::move(waiting_.front());
      waiting_.pop_front();
    }
    next();
  }
}

}  // namespace quillmere
