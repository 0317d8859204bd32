// A count, and those who are told when it grows.
#include "runtime/ChangeSignal.h"

#include <utility>

namespace quillmere {

const ChangeSignal& ChangeSignal::absent() {
  struct Absent : ChangeSignal {
    Absent() { setStaleAt(MonotonicTime::min()); }
  };
  static const Absent signal;
  return signal;
}

void ChangeSignal::raise() {
  std::vector<std::shared_ptr<std::function<void()>>> told;
  {
    const std::lock_guard lock(mutex_);
    ++raises_;
    std::erase_if(followers_, [&told](const auto& weak) {
      auto follower = weak.lock();
      const bool hasGone = !follower;
      if (!hasGone) told.push_back(std::move(follower));
      return hasGone;
    });
  }
  for (const auto& follower : told) (*follower)();
}

std::uint64_t ChangeSignal::raises() const {
  const std::lock_guard lock(mutex_);
  return raises_;
}

void ChangeSignal::setStaleAt(std::optional<MonotonicTime> time) {
  const std::lock_guard lock(mutex_);
  staleAt_ = time;
}

std::optional<MonotonicTime> ChangeSignal::staleAt() const {
  const std::lock_guard lock(mutex_);
  return staleAt_;
}

Subscription ChangeSignal::follow(std::function<void()> told) const {
  auto follower = std::make_shared<std::function<void()>>(std::move(told));
  const std::lock_guard lock(mutex_);
  std::erase_if(followers_, [](const auto& weak) { return weak.expired(); });
  followers_.push_back(follower);
  return Subscription(std::move(follower));
}

}  // namespace quillmere
