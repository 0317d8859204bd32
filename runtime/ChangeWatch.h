// What a poll depends on, and the sleep of a poll that would find nothing new.
#pragma once

#include <coroutine>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "runtime/ChangeSignal.h"
#include "runtime/Task.h"

namespace quillmere {

/// Where the answers come from that a poll looks at. All outlive the poll.
using ChangeSources = std::vector<const ChangeSignal*>;

/// One poll's view of its sources. Of one task.
class ChangeWatch {
 public:
  /// Those of `asFarAsTold` count when they are raised; that they go stale some time is no reason to ask them.
  explicit ChangeWatch(const ChangeSources& sources = {}, const ChangeSources& asFarAsTold = {});

  void add(const ChangeSignal& source);

  /// To be called before each look: what is raised from here on calls for another one. Returns whether this one is
  /// called for: it is the first, or a source was raised since the last.
  bool beginLook();

 private:
  friend class ChangeSleep;
  struct Source {
    const ChangeSignal* signal;
    std::uint64_t seen;
    bool isAsked;

    [[nodiscard]] std::optional<MonotonicTime> staleAt() const;
  };
  std::vector<Source> sources_;
  bool hasLooked_ = false;
};

/// What `co_await sleepUntilChanged(...)` waits on.
class ChangeSleep {
 public:
  ChangeSleep(Executor& executor, Duration period, const ChangeWatch& watch);
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <typename Promise>
  void await_suspend(std::coroutine_handle<Promise> caller) {
    suspend(caller.promise().task, caller);
  }
  void await_resume();

 private:
  class Sleeper;
  void suspend(TaskState* task, std::coroutine_handle<> handle);
  std::shared_ptr<Sleeper> sleeper_;
};

/// Suspends a poll for a whole number of periods, one at least: to the first time at which, since the last look of
/// `watch`, a source has been raised or has gone stale. Those are the times at which a poll of this period that begins
/// now would look anyway; nothing wakes in between. A cancelled task goes on at once.
[[nodiscard]] ChangeSleep sleepUntilChanged(const TaskContext& task, Duration period, const ChangeWatch& watch);

}  // namespace quillmere
