// A hand-cranked process for tests.
#include "runtime/VirtualTime.h"

#include <algorithm>
#include <optional>

#include "runtime/Threads.h"

namespace quillmere {

class VirtualTime::VirtualExecutor final : public Executor {
 public:
  explicit VirtualExecutor(VirtualTime& time, bool isMain = false) : time_(time), isMain_(isMain) {}
  void post(Work work) override { time_.enqueue(*this, Duration::zero(), std::move(work)); }
  TimerID postAfter(Duration delay, Work work) override { return time_.enqueue(*this, delay, std::move(work)); }
  void cancelTimer(TimerID timer) override {
    const auto due = time_.dueTimes_.find(timer);
    if (due == time_.dueTimes_.end()) return;
    const auto dropped = time_.items_.extract(Key{due->second, timer});
    time_.dueTimes_.erase(due);
  }
  [[nodiscard]] MonotonicTime now() const override { return time_.now_; }
  [[nodiscard]] bool isCurrent() const override {
    return time_.running_ == this || (isMain_ && time_.running_ == nullptr);
  }

 private:
  VirtualTime& time_;
  bool isMain_;
};

class VirtualTime::VirtualSerialQueue final : public SerialQueue {
 public:
  explicit VirtualSerialQueue(VirtualTime& time) : time_(time), executor_(time) {}
  ~VirtualSerialQueue() override {
    runQueued();
    while (time_.takeNextOn(executor_, MonotonicTime::max())) {
    }
  }
  void async(Work work) override { executor_.post(std::move(work)); }
  void asyncAfter(Duration delay, Work work) override { executor_.postAfter(delay, std::move(work)); }
  void sync(const Work& work) override {
    if (isCurrent()) preconditionFailure("a serial queue was asked to wait for itself");
    runQueued();
    time_.run(Item{&executor_, work});
  }
  [[nodiscard]] bool isCurrent() const override { return executor_.isCurrent(); }

 private:
  void runQueued() { time_.runDueOn(executor_); }

  VirtualTime& time_;
  VirtualExecutor executor_;
};

VirtualTime::VirtualTime(Date start)
    : start_(start),
      main_(std::make_unique<VirtualExecutor>(*this, true)),
      background_(std::make_unique<VirtualExecutor>(*this)) {}

VirtualTime::~VirtualTime() { shutDown(); }

void VirtualTime::jumpWallClock(double seconds) {
  wallOffsetSeconds_ += seconds;
  settings_.raise();
}

void VirtualTime::sleepThread(Duration duration) {
  ++threadSleeps_;
  now_ += duration;
}

std::uint64_t VirtualTime::enqueue(VirtualExecutor& executor, Duration delay, Work work) {
  const auto sequence = ++lastSequence_;
  if (shutDown_) return sequence;
  const auto due = now_ + std::max(delay, Duration::zero());
  items_.emplace(Key{due, sequence}, Item{&executor, std::move(work)});
  dueTimes_.emplace(sequence, due);
  return sequence;
}

bool VirtualTime::runNext(MonotonicTime limit) {
  if (items_.empty() || items_.begin()->first.first > limit) return false;
  auto node = items_.extract(items_.begin());
  dueTimes_.erase(node.key().second);
  now_ = std::max(now_, node.key().first);
  run(std::move(node.mapped()));
  return true;
}

void VirtualTime::run(Item item) {
  auto* const before = std::exchange(running_, item.executor);
  item.work();
  item.work = nullptr;
  running_ = before;
}

void VirtualTime::runUntilIdle() {
  while (runNext(now_)) {
  }
}

void VirtualTime::advance(Duration duration) {
  const auto target = now_ + duration;
  while (runNext(target)) {
  }
  now_ = std::max(now_, target);
}

std::optional<VirtualTime::Item> VirtualTime::takeNextOn(const Executor& executor, MonotonicTime limit) {
  const auto next = std::find_if(items_.begin(), items_.end(),
                                 [&executor](const auto& item) { return item.second.executor == &executor; });
  if (next == items_.end() || next->first.first > limit) return std::nullopt;
  auto node = items_.extract(next);
  dueTimes_.erase(node.key().second);
  return std::move(node.mapped());
}

void VirtualTime::runDueOn(Executor& executor) {
  while (auto item = takeNextOn(executor, now_)) run(std::move(*item));
}

void VirtualTime::shutDown() {
  shutDown_ = true;
  while (!items_.empty()) {
    const auto dropped = items_.extract(items_.begin());
    dueTimes_.erase(dropped.key().second);
  }
}

Executor& VirtualTime::main() { return *main_; }

Executor& VirtualTime::background() { return *background_; }

std::unique_ptr<SerialQueue> VirtualTime::makeSerialQueue(const std::string& /*label*/) {
  return std::make_unique<VirtualSerialQueue>(*this);
}

Runtime VirtualTime::runtime(LogSink& log) {
  return Runtime{main(), background(), *this, log, [this](const std::string& label) { return makeSerialQueue(label); }};
}

}  // namespace quillmere
