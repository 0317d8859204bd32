// Long-running work that reads from top to bottom: coroutines that start on an executor and stay on it.
// Cancelling is cooperative; sleeping on a cancelled task returns at once.
#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "runtime/Executor.h"

namespace quillmere {

class TaskContext;
class TaskState;

namespace detail {

struct TaskControl;

/// One suspended coroutine that waits to be resumed, once, on its task's executor. Whoever holds it keeps the task
/// alive; when the last holder drops it without firing, the task and its frame are destroyed.
class Resumption {
 public:
  Resumption(std::shared_ptr<TaskState> task, std::coroutine_handle<> handle);
  ~Resumption();
  Resumption(const Resumption&) = delete;
  Resumption& operator=(const Resumption&) = delete;
  /// Posts the coroutine to its executor. Only the first call of either does anything. [any]
  void fire();
  /// Resumes it at once: for work that the task's executor runs already.
  void fireHere();

 private:
  struct Fields;
  [[nodiscard]] std::shared_ptr<TaskState> takeTask();
  std::unique_ptr<Fields> fields_;
};

/// Makes the resumption of a coroutine that is being suspended and lets a cancellation of its task fire it.
std::shared_ptr<Resumption> suspendTask(TaskState* task, std::coroutine_handle<> handle);
void markFinished(TaskState* task);
/// A suspending coroutine may be resumed and ended by another thread at once: hold its task while still looking at it.
std::shared_ptr<TaskState> keepAlive(TaskState* task);
bool isCancelled(const TaskState& task);

template <typename Promise>
struct FinalAwaiter {
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> self) const noexcept {
    auto& promise = self.promise();
    if (promise.continuation) return promise.continuation;
    if (promise.task != nullptr) markFinished(promise.task);
    return std::noop_coroutine();
  }
  void await_resume() const noexcept {}
};

struct PromiseBase {
  TaskState* task = nullptr;
  std::coroutine_handle<> continuation;
  [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
  /// No error crosses a layer as an exception: one that gets here is a programming error.
  [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
};

}  // namespace detail

/// A coroutine that gives a T. It runs when awaited by another, or when started as a task.
template <typename T>
class [[nodiscard]] Async {
 public:
  struct promise_type : detail::PromiseBase {
    std::optional<T> result;
    Async get_return_object() { return Async(std::coroutine_handle<promise_type>::from_promise(*this)); }
    [[nodiscard]] detail::FinalAwaiter<promise_type> final_suspend() const noexcept { return {}; }
    void return_value(T value) { result.emplace(std::move(value)); }
  };

  Async(Async&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Async& operator=(Async&&) = delete;
  ~Async() {
    if (handle_) handle_.destroy();
  }

  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <typename CallerPromise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<CallerPromise> caller) noexcept {
    handle_.promise().task = caller.promise().task;
    handle_.promise().continuation = caller;
    return handle_;
  }
  T await_resume() { return std::move(*handle_.promise().result); }

 private:
  explicit Async(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
  std::coroutine_handle<promise_type> handle_;
};

template <>
class [[nodiscard]] Async<void> {
 public:
  struct promise_type : detail::PromiseBase {
    Async get_return_object() { return Async(std::coroutine_handle<promise_type>::from_promise(*this)); }
    [[nodiscard]] detail::FinalAwaiter<promise_type> final_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
  };

  Async(Async&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Async& operator=(Async&&) = delete;
  ~Async() {
    if (handle_) handle_.destroy();
  }

  [[nodiscard]] bool await_ready() const noexcept { return false; }
  template <typename CallerPromise>
  std::coroutine_handle<> await_suspend(std::coroutine_handle<CallerPromise> caller) noexcept {
    handle_.promise().task = caller.promise().task;
    handle_.promise().continuation = caller;
    return handle_;
  }
  void await_resume() const noexcept {}

 private:
  friend class TaskState;
  explicit Async(std::coroutine_handle<promise_type> handle) : handle_(handle) {}
  std::coroutine_handle<promise_type> handle_;
};

/// A handle on a started task. Copies name the same task; it may outlive the task's end and keeps nothing alive.
class Task {
 public:
  Task() = default;
  /// Asks the task to end: a sleep it is in returns at once, and isCancelled() turns true for it. [any]
  void cancel() const;
  [[nodiscard]] bool isCancelled() const;
  /// Whether the body has run to its end (a task that was dropped half-way never has). [any]
  [[nodiscard]] bool isFinished() const;
  /// Whether this handle names a task at all.
  explicit operator bool() const { return control_ != nullptr; }

 private:
  friend class TaskState;
  explicit Task(std::shared_ptr<detail::TaskControl> control) : control_(std::move(control)) {}
  std::shared_ptr<detail::TaskControl> control_;
};

/// A task's body. Its captures live as long as the task does.
using TaskBody = std::function<Async<void>(TaskContext&)>;

/// Starts `body` on `executor`, through its queue: never inside this call. [any]
Task startTask(Executor& executor, TaskBody body);

/// What `co_await context.sleep(...)` waits on.
class SleepAwaiter {
 public:
  SleepAwaiter(TaskState* task, Duration duration) : task_(task), duration_(duration) {}
  [[nodiscard]] bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> handle);
  void await_resume();

 private:
  struct Timer;
  TaskState* task_;
  Duration duration_;
  std::shared_ptr<Timer> timer_;
};

/// What a running body knows of its task. Used on the task's own executor only.
class TaskContext {
 public:
  explicit TaskContext(TaskState& state) : state_(&state) {}
  [[nodiscard]] bool isCancelled() const;
  [[nodiscard]] Executor& executor() const;
  /// Suspends for `duration` of monotonic time, or until the task is cancelled.
  [[nodiscard]] SleepAwaiter sleep(Duration duration) const { return {state_, duration}; }

 private:
  TaskState* state_;
};

}  // namespace quillmere
