// The main thread's queue on Qt's event loop.
#include "windows/QtMainExecutor.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

namespace quillmere {

namespace {
const auto wakeEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
}  // namespace

QtMainExecutor::QtMainExecutor() = default;

QtMainExecutor::~QtMainExecutor() { shutDown(); }

void QtMainExecutor::shutDown() {
  // Destroyed after the lock is free: what the work holds may post in its destructor.
  std::deque<Work> ready;
  TimerStore timers;
  const std::lock_guard lock(mutex_);
  closed_ = true;
  ready.swap(ready_);
  timers = std::exchange(timers_, {});
}

void QtMainExecutor::wake() {
  if (std::exchange(wakePosted_, true)) return;
  QCoreApplication::postEvent(this, new QEvent(wakeEvent));
}

void QtMainExecutor::post(Work work) {
  const std::lock_guard lock(mutex_);
  if (closed_) return;
  ready_.push_back(std::move(work));
  wake();
}

TimerID QtMainExecutor::postAfter(Duration delay, Work work) {
  const std::lock_guard lock(mutex_);
  if (closed_) return 0;
  const MonotonicTime due = std::chrono::steady_clock::now() + delay;
  const auto watchedFor = timers_.nextDue();
  const TimerID timer = timers_.add(due, std::move(work));
  if (!watchedFor || due < *watchedFor) wake();
  return timer;
}

void QtMainExecutor::cancelTimer(TimerID timer) {
  Work dropped;
  const std::lock_guard lock(mutex_);
  dropped = timers_.remove(timer);
}

bool QtMainExecutor::isCurrent() const { return QThread::currentThread() == thread(); }

bool QtMainExecutor::event(QEvent* event) {
  if (event->type() != wakeEvent) return QObject::event(event);
  runReady();
  return true;
}

void QtMainExecutor::timerEvent(QTimerEvent* event) {
  if (event->timerId() == timer_.timerId()) runReady();
}

void QtMainExecutor::runReady() {
  std::deque<Work> batch;
  {
    const std::lock_guard lock(mutex_);
    wakePosted_ = false;
    timers_.moveDue(std::chrono::steady_clock::now(), ready_);
    batch.swap(ready_);
  }
  // What the batch posts runs at the loop's next turn: the user's events are never starved.
  for (auto& work : batch) {
    work();
    work = nullptr;
  }
  watchNextTimer();
}

void QtMainExecutor::watchNextTimer() {
  const std::lock_guard lock(mutex_);
  const auto due = timers_.nextDue();
  if (!due) {
    timer_.stop();
    return;
  }
  const auto remaining = *due - MonotonicTime(std::chrono::steady_clock::now());
  const auto millis = std::chrono::ceil<std::chrono::milliseconds>(remaining).count();
  timer_.start(static_cast<int>(std::clamp<std::int64_t>(millis, 0, 1'000'000)), Qt::PreciseTimer, this);
}

}  // namespace quillmere
