// A timer that is far away holds the sleeping task, and a raise sets a nearer one.
#include "runtime/ChangeWatch.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace quillmere {

namespace {

/// A sleeper belongs to its executor, which drops it when it ends, and so it always waits for some timer there.
constexpr Duration longestSleep = std::chrono::hours(24);

/// The least whole number of periods, one at least, that takes as long as `wish`.
Duration wholePeriods(Duration wish, Duration period) {
  const auto count = wish.count() / period.count() + (wish.count() % period.count() > 0 ? 1 : 0);
  return period * std::max<Duration::rep>(1, count);
}

}  // namespace

ChangeWatch::ChangeWatch(const ChangeSources& sources, const ChangeSources& asFarAsTold) {
  for (const auto* signal : sources) sources_.push_back({signal, signal->raises(), true});
  for (const auto* signal : asFarAsTold) sources_.push_back({signal, signal->raises(), false});
}

void ChangeWatch::add(const ChangeSignal& source) { sources_.push_back({&source, source.raises(), true}); }

std::optional<MonotonicTime> ChangeWatch::Source::staleAt() const {
  const auto time = signal->staleAt();
  // One that never tells anything has to be asked by everybody.
  return isAsked || time == MonotonicTime::min() ? time : std::nullopt;
}

bool ChangeWatch::beginLook() {
  bool isCalledFor = !std::exchange(hasLooked_, true);
  for (auto& source : sources_) {
    const auto raises = source.signal->raises();
    if (std::exchange(source.seen, raises) != raises) isCalledFor = true;
  }
  return isCalledFor;
}

class ChangeSleep::Sleeper : public std::enable_shared_from_this<Sleeper> {
 public:
  Sleeper(Executor& executor, Duration period, std::vector<ChangeWatch::Source> sources)
      : executor_(executor), period_(period), sources_(std::move(sources)) {}

  void sleep(const std::shared_ptr<detail::Resumption>& resumption) {
    {
      const std::lock_guard lock(mutex_);
      begin_ = executor_.now();
      length_ = wholePeriods(longestSleep, period_);
      for (const auto& source : sources_) {
        const auto staleAt = source.staleAt();
        // No difference of the two: a time without beginning is as early as there is.
        if (staleAt && *staleAt <= begin_ + period_) {
          length_ = period_;
        } else if (staleAt && *staleAt < begin_ + length_) {
          length_ = wholePeriods(*staleAt - begin_, period_);
        }
      }
      resumption_ = resumption;
      timers_.push_back(executor_.postAfter(length_, [resumption] { resumption->fireHere(); }));
      if (length_ == period_) return;
      for (const auto& source : sources_) {
        following_.push_back(source.signal->follow([weak = weak_from_this()] {
          if (const auto self = weak.lock()) self->call();
        }));
      }
    }
    // Raised after the look and before anybody was told of it here.
    const bool isLate =
        std::ranges::any_of(sources_, [](const auto& source) { return source.signal->raises() != source.seen; });
    if (isLate) call();
  }

  void wakeUp() {
    std::vector<Subscription> following;
    const std::lock_guard lock(mutex_);
    following.swap(following_);
    isCalled_ = true;
    for (const auto timer : timers_) executor_.cancelTimer(timer);
  }

 private:
  void call() {
    const std::lock_guard lock(mutex_);
    if (std::exchange(isCalled_, true)) return;
    const auto passed = executor_.now() - begin_;
    // A look at this very moment has been made, as far as those who poll plainly are concerned.
    const auto due = period_ * (passed / period_ + 1);
    if (due >= length_) return;
    // Weak: the sleeping task goes with the timer of the executor's, wherever that is dropped.
    timers_.push_back(executor_.postAfter(due - passed, [weak = resumption_] {
      if (const auto resumption = weak.lock()) resumption->fireHere();
    }));
  }

  Executor& executor_;
  const Duration period_;
  const std::vector<ChangeWatch::Source> sources_;
  std::mutex mutex_;
  MonotonicTime begin_{};
  Duration length_{};
  std::weak_ptr<detail::Resumption> resumption_;
  std::vector<TimerID> timers_;
  std::vector<Subscription> following_;
  bool isCalled_ = false;
};

ChangeSleep::ChangeSleep(Executor& executor, Duration period, const ChangeWatch& watch)
    : sleeper_(std::make_shared<Sleeper>(executor, period, watch.sources_)) {}

void ChangeSleep::suspend(TaskState* sleeping, std::coroutine_handle<> handle) {
  const auto task = detail::keepAlive(sleeping);
  const auto sleeper = sleeper_;
  // From here on another thread may resume the coroutine and end it: neither this awaiter nor its frame is touched.
  const auto resumption = detail::suspendTask(task.get(), handle);
  if (detail::isCancelled(*task)) {
    resumption->fire();
    return;
  }
  sleeper->sleep(resumption);
}

void ChangeSleep::await_resume() { sleeper_->wakeUp(); }

ChangeSleep sleepUntilChanged(const TaskContext& task, Duration period, const ChangeWatch& watch) {
  return {task.executor(), period, watch};
}

}  // namespace quillmere
