// A value that is answered later, once, by a callback: the bridge from callbacks to coroutines.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/Task.h"

namespace quillmere {

/// Awaited by one coroutine. If every resolver goes without answering, the waiting task is dropped.
template <typename T>
class Completion {
  struct State {
    std::mutex mutex;
    std::optional<T> value;
    std::shared_ptr<detail::Resumption> waiting;
    bool abandoned = false;
  };
  struct Guard {
    explicit Guard(std::shared_ptr<State> guarded) : state(std::move(guarded)) {}
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    ~Guard() {
      std::shared_ptr<detail::Resumption> dropped;
      const std::lock_guard lock(state->mutex);
      state->abandoned = true;
      dropped = std::move(state->waiting);
    }
    std::shared_ptr<State> state;
  };

 public:
  /// The answering side; copies answer the same completion, only the first answer counts. [any]
  class Resolver {
   public:
    explicit Resolver(std::shared_ptr<Guard> guard) : guard_(std::move(guard)) {}
    void operator()(T value) const {
      std::shared_ptr<detail::Resumption> waiting;
      {
        const std::lock_guard lock(guard_->state->mutex);
        if (guard_->state->value) return;
        guard_->state->value.emplace(std::move(value));
        waiting = std::move(guard_->state->waiting);
      }
      if (waiting) waiting->fire();
    }

   private:
    std::shared_ptr<Guard> guard_;
  };

  Completion() : state_(std::make_shared<State>()), guard_(std::make_shared<Guard>(state_)) {}

  /// Hands out the answering side; called once.
  [[nodiscard]] Resolver resolver() { return Resolver(std::move(guard_)); }

  [[nodiscard]] bool await_ready() const {
    const std::lock_guard lock(state_->mutex);
    return state_->value.has_value();
  }
  template <typename Promise>
  void await_suspend(std::coroutine_handle<Promise> caller) {
    const auto state = state_;
    const auto task = detail::keepAlive(caller.promise().task);
    auto resumption = detail::suspendTask(task.get(), caller);
    const std::lock_guard lock(state->mutex);
    if (state->value || detail::isCancelled(*task)) {
      resumption->fire();
    } else if (!state->abandoned) {
      state->waiting = std::move(resumption);
    }
  }
  /// The answer; absent if the task was cancelled before there was one.
  std::optional<T> await_resume() {
    const std::lock_guard lock(state_->mutex);
    state_->waiting.reset();
    return std::move(state_->value);
  }

 private:
  std::shared_ptr<State> state_;
  std::shared_ptr<Guard> guard_;
};

}  // namespace quillmere
