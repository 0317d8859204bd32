// Work that is ready and work that waits for its time.
#include "runtime/TimedQueue.h"

#include <utility>

namespace quillmere {

void TimedQueue::post(Work work) {
  {
    const std::lock_guard lock(mutex_);
    // A closed queue drops work outside its lock, when `work` goes out of scope.
    if (closed_) return;
    ready_.push_back(std::move(work));
  }
  changed_.notify_one();
}

TimerID TimedQueue::postAfter(Duration delay, Work work) {
  const std::lock_guard lock(mutex_);
  if (closed_) return 0;
  const MonotonicTime due = std::chrono::steady_clock::now() + delay;
  const auto watchedFor = timers_.nextDue();
  const TimerID timer = timers_.add(due, std::move(work));
  // The taker on watch waits for what was the earliest; which of the takers that is, nobody knows.
  if (!watchedFor || due < *watchedFor) changed_.notify_all();
  return timer;
}

void TimedQueue::cancelTimer(TimerID timer) {
  Work dropped;
  const std::lock_guard lock(mutex_);
  dropped = timers_.remove(timer);
}

std::optional<Work> TimedQueue::take() {
  std::unique_lock lock(mutex_);
  while (true) {
    if (closed_) return std::nullopt;
    timers_.moveDue(std::chrono::steady_clock::now(), ready_);
    if (!ready_.empty()) {
      Work work = std::move(ready_.front());
      ready_.pop_front();
      if (!ready_.empty() || (!watched_ && timers_.nextDue())) changed_.notify_one();
      return work;
    }
    const auto due = timers_.nextDue();
    if (!due || watched_) {
      changed_.wait(lock);
    } else {
      watched_ = true;
      changed_.wait_until(lock, *due);
      watched_ = false;
    }
  }
}

void TimedQueue::close() {
  std::deque<Work> ready;
  TimerStore timers;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    ready.swap(ready_);
    timers = std::exchange(timers_, {});
  }
  changed_.notify_all();
}

}  // namespace quillmere
