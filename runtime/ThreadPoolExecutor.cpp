// The background pool: a few threads that share one queue.
#include "runtime/ThreadPoolExecutor.h"

#include <chrono>
#include <optional>
#include <system_error>
#include <utility>

#include "runtime/HostThreads.h"
#include "runtime/ThreadAlarm.h"

namespace quillmere {

namespace {
constexpr auto pause = std::chrono::seconds(1);
thread_local const ThreadPoolExecutor* currentPool = nullptr;
/// This thread has been there for long enough.
thread_local bool isToLeave = false;
}  // namespace

ThreadPoolExecutor::ThreadPoolExecutor(std::size_t threadCount, Duration helpStays)
    : most_(threadCount), helpStays_(helpStays) {
  const auto makeAlarm = hostThreads().makeAlarm;
  const std::lock_guard lock(mutex_);
  if (makeAlarm != nullptr && most_ > 1) {
    alarm_ = makeAlarm([this] { bringHelp(); });
    queue_.onHelpDue([&alarm = *alarm_](std::optional<MonotonicTime> time) { alarm.set(time); });
    start();
  } else {
    for (std::size_t index = 0; index < most_; ++index) start();
  }
}

ThreadPoolExecutor::~ThreadPoolExecutor() { shutDown(); }

/// Under the mutex.
void ThreadPoolExecutor::start() {
  const auto self = threads_.emplace(threads_.end());
  try {
    *self = std::thread([this, self] { run(self); });
  } catch (const std::system_error&) {
    threads_.erase(self);
    throw;
  }
}

void ThreadPoolExecutor::run(std::list<std::thread>::iterator self) {
  if (const auto name = hostThreads().nameThread) name("quillmere-pool");
  currentPool = this;
  while (auto work = queue_.take()) {
    (*work)();
    work.reset();
    if (std::exchange(isToLeave, false) && leave(self)) return;
  }
}

void ThreadPoolExecutor::bringHelp() {
  std::list<std::thread> ended;
  {
    const std::lock_guard lock(mutex_);
    if (isShutDown_) return;
    ended.swap(ended_);
    if (threads_.size() < most_) {
      try {
        start();
        // Whoever runs this is one too many then; it may be any of them.
        queue_.postAfter(helpStays_, [] { isToLeave = true; });
      } catch (const std::system_error&) {
        // Too many run in this session, or there is no memory for its stack. That passes.
        alarm_->set(std::chrono::steady_clock::now() + pause);
      }
    }
  }
  for (auto& thread : ended) thread.join();
}

/// False for the last one, which stays.
bool ThreadPoolExecutor::leave(std::list<std::thread>::iterator self) {
  const std::lock_guard lock(mutex_);
  if (isShutDown_ || threads_.size() == 1) return false;
  ended_.splice(ended_.end(), threads_, self);
  return true;
}

void ThreadPoolExecutor::shutDown() {
  {
    const std::lock_guard lock(mutex_);
    isShutDown_ = true;
  }
  queue_.close();
  // None is started any more, and none leaves.
  for (auto* threads : {&threads_, &ended_}) {
    for (auto& thread : *threads) thread.join();
    threads->clear();
  }
}

void ThreadPoolExecutor::post(Work work) { queue_.post(std::move(work)); }

TimerID ThreadPoolExecutor::postAfter(Duration delay, Work work) { return queue_.postAfter(delay, std::move(work)); }

void ThreadPoolExecutor::cancelTimer(TimerID timer) { queue_.cancelTimer(timer); }

bool ThreadPoolExecutor::isCurrent() const { return currentPool == this; }

}  // namespace quillmere
