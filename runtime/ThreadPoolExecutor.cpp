// The background pool: a few threads that share one queue.
#include "runtime/ThreadPoolExecutor.h"

namespace quillmere {

namespace {
thread_local const ThreadPoolExecutor* currentPool = nullptr;
}  // namespace

ThreadPoolExecutor::ThreadPoolExecutor(std::size_t threadCount) {
  threads_.reserve(threadCount);
  for (std::size_t index = 0; index < threadCount; ++index) {
    threads_.emplace_back([this] {
      currentPool = this;
      while (auto work = queue_.take()) (*work)();
    });
  }
}

ThreadPoolExecutor::~ThreadPoolExecutor() { shutDown(); }

void ThreadPoolExecutor::shutDown() {
  queue_.close();
  for (auto& thread : threads_) thread.join();
  threads_.clear();
}

void ThreadPoolExecutor::post(Work work) { queue_.post(std::move(work)); }

TimerID ThreadPoolExecutor::postAfter(Duration delay, Work work) { return queue_.postAfter(delay, std::move(work)); }

void ThreadPoolExecutor::cancelTimer(TimerID timer) { queue_.cancelTimer(timer); }

bool ThreadPoolExecutor::isCurrent() const { return currentPool == this; }

}  // namespace quillmere
