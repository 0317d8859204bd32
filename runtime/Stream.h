// An unbounded stream of values with one producing task and one consumer. The end of either ends the other.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "runtime/ChangeSignal.h"
#include "runtime/Task.h"

namespace quillmere {

/// How often the consumer of a polled stream wants an element.
enum class Pace {
  /// Each period, changed or not.
  everyPeriod,
  /// Not while the producer knows that it would be the one of before.
  whenChanged,
};

template <typename T>
class Stream {
  struct State {
    std::mutex mutex;
    std::deque<T> buffer;
    bool finished = false;
    Pace pace = Pace::everyPeriod;
    ChangeSignal wishes;
    std::shared_ptr<detail::Resumption> consumer;
    Task producer;

    void finish() {
      std::shared_ptr<detail::Resumption> waiting;
      {
        const std::lock_guard lock(mutex);
        finished = true;
        waiting = std::move(consumer);
      }
      if (waiting) waiting->fire();
    }
  };

 public:
  /// The producing side, handed to the producer's body.
  class Writer {
   public:
    explicit Writer(std::shared_ptr<State> state) : state_(std::move(state)) {}
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { state_->finish(); }

    /// Appends a value; never waits. [any]
    void yield(T value) {
      std::shared_ptr<detail::Resumption> waiting;
      {
        const std::lock_guard lock(state_->mutex);
        if (state_->finished) return;
        state_->buffer.push_back(std::move(value));
        waiting = std::move(state_->consumer);
      }
      if (waiting) waiting->fire();
    }
    /// What the consumer wants at the moment. [any]
    [[nodiscard]] Pace pace() const {
      const std::lock_guard lock(state_->mutex);
      return state_->pace;
    }
    /// Raised when the consumer calls for an element. Lives as long as this. [any]
    [[nodiscard]] const ChangeSignal& wishes() const { return state_->wishes; }
    /// How many values the consumer has not taken yet. [any]
    [[nodiscard]] std::size_t backlog() const {
      const std::lock_guard lock(state_->mutex);
      return state_->buffer.size();
    }

   private:
    std::shared_ptr<State> state_;
  };

  using Body = std::function<Async<void>(TaskContext&, Writer&)>;

  /// Starts a producer on `executor`. The stream finishes when the body returns. [any]
  static Stream produce(Executor& executor, Body body) {
    auto state = std::make_shared<State>();
    auto writer = std::make_shared<Writer>(state);
    state->producer = startTask(
        executor,
        [writer, body = std::move(body), weak = std::weak_ptr<State>(state)](TaskContext& task) -> Async<void> {
          co_await body(task, *writer);
          if (const auto finished = weak.lock()) finished->finish();
        });
    return Stream(std::move(state));
  }

  Stream(Stream&&) noexcept = default;
  Stream& operator=(Stream&& other) noexcept {
    terminate();
    state_ = std::move(other.state_);
    return *this;
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() { terminate(); }

  /// Waits for the next value; absent when the stream has ended or the consuming task was cancelled.
  class Next {
   public:
    explicit Next(std::shared_ptr<State> state) : state_(std::move(state)) {}
    [[nodiscard]] bool await_ready() const {
      const std::lock_guard lock(state_->mutex);
      return hasResult();
    }
    template <typename Promise>
    void await_suspend(std::coroutine_handle<Promise> caller) {
      const auto task = detail::keepAlive(caller.promise().task);
      const auto state = state_;
      auto resumption = detail::suspendTask(task.get(), caller);
      const std::lock_guard lock(state->mutex);
      if (!state->buffer.empty() || state->finished || detail::isCancelled(*task)) {
        resumption->fire();
      } else {
        state->consumer = std::move(resumption);
      }
    }
    std::optional<T> await_resume() {
      const std::lock_guard lock(state_->mutex);
      state_->consumer.reset();
      if (state_->buffer.empty()) return std::nullopt;
      std::optional<T> value(std::move(state_->buffer.front()));
      state_->buffer.pop_front();
      return value;
    }

   private:
    [[nodiscard]] bool hasResult() const { return !state_->buffer.empty() || state_->finished; }
    std::shared_ptr<State> state_;
  };

  [[nodiscard]] Next next() { return Next(state_); }

  /// How often this consumer wants an element: each period, at first. Whoever would do nothing with an element like the
  /// last one says so here, and neither end is woken for it. A producer that doesn't ask goes on as ever. [any]
  void setPace(Pace pace) {
    {
      const std::lock_guard lock(state_->mutex);
      if (std::exchange(state_->pace, pace) == pace) return;
    }
    if (pace == Pace::everyPeriod) state_->wishes.raise();
  }
  /// Calls for the element of the next period, changed or not; may be kept and called when the stream has gone. [any]
  [[nodiscard]] std::function<void()> asker() const {
    return [weak = std::weak_ptr<State>(state_)] {
      if (const auto state = weak.lock()) state->wishes.raise();
    };
  }

 private:
  explicit Stream(std::shared_ptr<State> state) : state_(std::move(state)) {}

  void terminate() {
    if (!state_) return;
    state_->finish();
    state_->producer.cancel();
    state_.reset();
  }

  std::shared_ptr<State> state_;
};

}  // namespace quillmere
