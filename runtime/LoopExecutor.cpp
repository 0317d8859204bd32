// A main loop without a window system.
#include "runtime/LoopExecutor.h"

namespace quillmere {

LoopExecutor::LoopExecutor() : thread_(std::this_thread::get_id()) {}

LoopExecutor::~LoopExecutor() { queue_.close(); }

void LoopExecutor::post(Work work) { queue_.post(std::move(work)); }

TimerID LoopExecutor::postAfter(Duration delay, Work work) { return queue_.postAfter(delay, std::move(work)); }

void LoopExecutor::cancelTimer(TimerID timer) { queue_.cancelTimer(timer); }

bool LoopExecutor::isCurrent() const { return thread_.load() == std::this_thread::get_id(); }

void LoopExecutor::run() {
  thread_.store(std::this_thread::get_id());
  while (auto work = queue_.take()) (*work)();
}

void LoopExecutor::stop() { queue_.close(); }

}  // namespace quillmere
