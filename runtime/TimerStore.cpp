// Work that waits for its time, by due time and by number.
#include "runtime/TimerStore.h"

namespace quillmere {

TimerID TimerStore::add(MonotonicTime due, Work work) {
  const TimerID timer = ++lastTimer_;
  timers_.emplace(Due{due, timer}, std::move(work));
  dueTimes_.emplace(timer, due);
  return timer;
}

Work TimerStore::remove(TimerID timer) {
  const auto due = dueTimes_.find(timer);
  if (due == dueTimes_.end()) return nullptr;
  auto node = timers_.extract(Due{due->second, timer});
  dueTimes_.erase(due);
  return std::move(node.mapped());
}

void TimerStore::moveDue(MonotonicTime now, std::deque<Work>& ready) {
  while (!timers_.empty() && timers_.begin()->first.first <= now) {
    auto node = timers_.extract(timers_.begin());
    dueTimes_.erase(node.key().second);
    ready.push_back(std::move(node.mapped()));
  }
}

std::optional<MonotonicTime> TimerStore::nextDue() const {
  if (timers_.empty()) return std::nullopt;
  return timers_.begin()->first.first;
}

}  // namespace quillmere
