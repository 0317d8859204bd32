// The state behind a task: who keeps its frame alive, and how a cancellation finds a suspended coroutine.
#include "runtime/Task.h"

#include <atomic>
#include <mutex>

namespace quillmere {

namespace detail {

/// The part that handles share; it does not own the coroutine.
struct TaskControl {
  std::atomic<bool> cancelled{false};
  std::atomic<bool> finished{false};
  std::mutex mutex;
  /// The coroutine that waits now, if any.
  std::weak_ptr<Resumption> waiting;
};

}  // namespace detail

/// Owns the body and the frame. Held only by whoever will resume the coroutine next.
class TaskState : public std::enable_shared_from_this<TaskState> {
 public:
  TaskState(Executor& executor, TaskBody body)
      : executor_(executor),
        control_(std::make_shared<detail::TaskControl>()),
        body_(std::move(body)),
        context_(*this) {}

  static Task start(const std::shared_ptr<TaskState>& state) {
    Task handle(state->control_);
    state->executor_.post([state] {
      state->root_.emplace(state->body_(state->context_));
      const auto root = state->root_->handle_;
      root.promise().task = state.get();
      root.resume();
    });
    return handle;
  }

  [[nodiscard]] Executor& executor() const { return executor_; }
  [[nodiscard]] detail::TaskControl& control() const { return *control_; }

 private:
  Executor& executor_;
  std::shared_ptr<detail::TaskControl> control_;
  // The frame refers to the captures of the body: it goes first.
  TaskBody body_;
  TaskContext context_;
  std::optional<Async<void>> root_;
};

namespace detail {

struct Resumption::Fields {
  std::mutex mutex;
  std::shared_ptr<TaskState> task;
  std::coroutine_handle<> handle;
};

Resumption::Resumption(std::shared_ptr<TaskState> task, std::coroutine_handle<> handle)
    : fields_(std::make_unique<Fields>()) {
  fields_->task = std::move(task);
  fields_->handle = handle;
}

Resumption::~Resumption() = default;

std::shared_ptr<TaskState> Resumption::takeTask() {
  const std::lock_guard lock(fields_->mutex);
  return std::move(fields_->task);
}

void Resumption::fire() {
  auto task = takeTask();
  if (!task) return;
  auto& executor = task->executor();
  executor.post([task = std::move(task), handle = fields_->handle] { handle.resume(); });
}

void Resumption::fireHere() {
  // Held until the coroutine suspends again or has ended.
  const auto task = takeTask();
  if (task) fields_->handle.resume();
}

std::shared_ptr<Resumption> suspendTask(TaskState* task, std::coroutine_handle<> handle) {
  auto resumption = std::make_shared<Resumption>(task->shared_from_this(), handle);
  const std::lock_guard lock(task->control().mutex);
  task->control().waiting = resumption;
  return resumption;
}

void markFinished(TaskState* task) { task->control().finished.store(true); }

std::shared_ptr<TaskState> keepAlive(TaskState* task) { return task->shared_from_this(); }

bool isCancelled(const TaskState& task) { return task.control().cancelled.load(); }

}  // namespace detail

void Task::cancel() const {
  if (!control_) return;
  control_->cancelled.store(true);
  std::shared_ptr<detail::Resumption> waiting;
  {
    const std::lock_guard lock(control_->mutex);
    waiting = control_->waiting.lock();
  }
  if (waiting) waiting->fire();
}

bool Task::isCancelled() const { return control_ && control_->cancelled.load(); }

bool Task::isFinished() const { return control_ && control_->finished.load(); }

Task startTask(Executor& executor, TaskBody body) {
  return TaskState::start(std::make_shared<TaskState>(executor, std::move(body)));
}

bool TaskContext::isCancelled() const { return state_->control().cancelled.load(); }

Executor& TaskContext::executor() const { return state_->executor(); }

struct SleepAwaiter::Timer {
  std::atomic<TimerID> id{0};
};

void SleepAwaiter::await_suspend(std::coroutine_handle<> handle) {
  auto timer = std::make_shared<Timer>();
  timer_ = timer;
  const auto task = detail::keepAlive(task_);
  const auto duration = duration_;
  // From here on another thread may resume the coroutine and end it: neither this awaiter nor its frame is touched.
  auto resumption = detail::suspendTask(task.get(), handle);
  if (detail::isCancelled(*task)) {
    resumption->fire();
    return;
  }
  timer->id.store(task->executor().postAfter(duration, [resumption] { resumption->fireHere(); }));
  // A cancellation between the check and the timer has fired already; the timer then finds nothing to do.
}

void SleepAwaiter::await_resume() {
  if (const auto id = timer_->id.load(); id != 0) task_->executor().cancelTimer(id);
}

}  // namespace quillmere
