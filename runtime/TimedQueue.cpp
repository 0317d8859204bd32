// Work that is ready and work that waits for its time.
#include "runtime/TimedQueue.h"

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
  const TimerID timer = ++lastTimer_;
  if (closed_) return timer;
  const MonotonicTime due = std::chrono::steady_clock::now() + delay;
  const auto position = timers_.emplace(Due{due, timer}, std::move(work)).first;
  dueTimes_.emplace(timer, due);
  // The taker on watch waits for what was the earliest; which of the takers that is, nobody knows.
  if (position == timers_.begin()) changed_.notify_all();
  return timer;
}

void TimedQueue::cancelTimer(TimerID timer) {
  Work dropped;
  const std::lock_guard lock(mutex_);
  const auto due = dueTimes_.find(timer);
  if (due == dueTimes_.end()) return;
  auto node = timers_.extract(Due{due->second, timer});
  dropped = std::move(node.mapped());
  dueTimes_.erase(due);
}

void TimedQueue::moveDueTimers(MonotonicTime now) {
  while (!timers_.empty() && timers_.begin()->first.first <= now) {
    auto node = timers_.extract(timers_.begin());
    dueTimes_.erase(node.key().second);
    ready_.push_back(std::move(node.mapped()));
  }
}

std::optional<Work> TimedQueue::take() {
  std::unique_lock lock(mutex_);
  while (true) {
    if (closed_) return std::nullopt;
    moveDueTimers(std::chrono::steady_clock::now());
    if (!ready_.empty()) {
      Work work = std::move(ready_.front());
      ready_.pop_front();
      if (!ready_.empty() || (!watched_ && !timers_.empty())) changed_.notify_one();
      return work;
    }
    if (timers_.empty() || watched_) {
      changed_.wait(lock);
    } else {
      watched_ = true;
      // A copy: the wait reads its deadline again without the lock, when the timer may be gone.
      const MonotonicTime due = timers_.begin()->first.first;
      changed_.wait_until(lock, due);
      watched_ = false;
    }
  }
}

void TimedQueue::close() {
  std::deque<Work> ready;
  std::map<Due, Work> timers;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    ready.swap(ready_);
    timers.swap(timers_);
    dueTimes_.clear();
  }
  changed_.notify_all();
}

}  // namespace quillmere
