// Work that is ready and work that waits for its time.
#include "runtime/TimedQueue.h"

#include <algorithm>
#include <utility>

namespace quillmere {

namespace {
/// The queue whose work this thread is at, or was at last.
thread_local const TimedQueue* takesFrom = nullptr;

MonotonicTime monotonicNow() { return std::chrono::steady_clock::now(); }
}  // namespace

void TimedQueue::post(Work work) {
  const std::lock_guard lock(mutex_);
  // A closed queue drops work outside its lock, when `work` goes out of scope.
  if (closed_) return;
  ready_.push_back(std::move(work));
  if (waiting_ == 0) helpBy(monotonicNow() + helpPatience);
  if (waiting_ == 0 || isCalled_) return;
  if (takesFrom == this) {
    leaveBehind(monotonicNow());
    return;
  }
  isCalled_ = true;
  // Under the lock: another taker may have done the work, and whoever waited for it may let the queue go.
  lot_->call();
}

TimerID TimedQueue::postAfter(Duration delay, Work work) {
  const MonotonicTime due = monotonicNow() + delay;
  const std::lock_guard lock(mutex_);
  if (closed_) return 0;
  const TimerID timer = timers_.add(due, std::move(work));
  if (waiting_ == 0) helpBy(due + helpPatience);
  setAlarm();
  return timer;
}

void TimedQueue::cancelTimer(TimerID timer) {
  Work dropped;
  const std::lock_guard lock(mutex_);
  // The alarm stays: it is set anew by whoever waits next, and until then a moment too early is the worst of it.
  dropped = timers_.remove(timer);
}

std::optional<Work> TimedQueue::take() {
  takesFrom = this;
  std::unique_lock lock(mutex_);
  while (!closed_) {
    const auto now = monotonicNow();
    timers_.moveDue(now, ready_);
    if (!ready_.empty()) {
      Work work = std::move(ready_.front());
      ready_.pop_front();
      leaveBehind(now);
      if (waiting_ == 0) {
        const auto next = ready_.empty() ? timers_.nextDue() : now;
        setHelp(next ? std::optional(*next + helpPatience) : std::nullopt);
      }
      return work;
    }
    ++waiting_;
    setHelp(std::nullopt);
    setAlarm();
    lock.unlock();
    lot_->wait();
    lock.lock();
    --waiting_;
    isCalled_ = false;
    // It may be what has ended the wait; where it isn't, the lot is told twice.
    alarm_.reset();
  }
  takesFrom = nullptr;
  if (waiting_ > 0) lot_->call();
  return std::nullopt;
}

void TimedQueue::close() {
  std::deque<Work> ready;
  TimerStore timers;
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    ready.swap(ready_);
    timers = std::exchange(timers_, {});
    setHelp(std::nullopt);
    // Each taker that goes calls the next. Under the lock, too.
    lot_->call();
  }
}

/// This taker goes to work, or on with it, and leaves what is ready to the next that is free.
void TimedQueue::leaveBehind(MonotonicTime now) {
  if (ready_.empty()) {
    helpDue_.reset();
  } else if (!helpDue_) {
    helpDue_ = now + patience;
  } else if (*helpDue_ <= now) {
    // The work is long, or there is much of it.
    helpDue_ = now + patience;
    if (waiting_ > 0 && !std::exchange(isCalled_, true)) lot_->call();
  }
  setAlarm();
}

void TimedQueue::setAlarm() {
  // Nobody to wake: whoever waits first sets it.
  if (waiting_ == 0) return;
  auto time = timers_.nextDue();
  if (helpDue_) time = time ? std::min(*time, *helpDue_) : *helpDue_;
  if (time == alarm_) return;
  alarm_ = time;
  lot_->setAlarm(time);
}

/// Every taker is held up, or there is none: somebody else comes then, if that isn't to happen before.
void TimedQueue::helpBy(MonotonicTime time) {
  if (!toldHelpDue_ || time < *toldHelpDue_) setHelp(time);
}

void TimedQueue::setHelp(std::optional<MonotonicTime> time) {
  if (!tellHelpDue_ || time == toldHelpDue_) return;
  toldHelpDue_ = time;
  tellHelpDue_(time);
}

}  // namespace quillmere
