// A serial queue on a thread of its own, lent to whoever waits for it while it is free.
#include "runtime/SerialQueue.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#if defined(__linux__)
#include <pthread.h>
#endif

#include "runtime/Threads.h"
#include "runtime/TimerStore.h"

namespace quillmere {

void SerialQueue::preconditionOnQueue() const {
  if (!isCurrent()) preconditionFailure("a queue-only routine was called off its queue");
}

namespace {

class ThreadSerialQueue final : public SerialQueue {
 public:
  explicit ThreadSerialQueue(std::string label) : thread_([this, name = std::move(label)] { run(name); }) {}

  ~ThreadSerialQueue() override {
    {
      const std::lock_guard lock(mutex_);
      closing_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }

  void async(Work work) override {
    {
      const std::lock_guard lock(mutex_);
      queue_.push_back(std::move(work));
    }
    changed_.notify_one();
  }

  void asyncAfter(Duration delay, Work work) override {
    {
      const std::lock_guard lock(mutex_);
      timers_.add(std::chrono::steady_clock::now() + delay, std::move(work));
    }
    changed_.notify_one();
  }

  void sync(const Work& work) override {
    if (isCurrent()) preconditionFailure("a serial queue was asked to wait for itself");
    if (runHere(work)) return;
    std::mutex doneMutex;
    std::condition_variable doneChanged;
    bool done = false;
    async([&] {
      work();
      // Notified under the lock: the waiter's frame may go the moment the lock is free.
      const std::lock_guard lock(doneMutex);
      done = true;
      doneChanged.notify_one();
    });
    std::unique_lock lock(doneMutex);
    doneChanged.wait(lock, [&] { return done; });
  }

  [[nodiscard]] bool isCurrent() const override { return std::this_thread::get_id() == runner_.load(); }

 private:
  /// Where nothing runs and nothing waits, the caller is the queue for the length of `work`: two threads less to wake.
  bool runHere(const Work& work) {
    {
      const std::lock_guard lock(mutex_);
      if (isRunning_ || !queue_.empty()) return false;
      isRunning_ = true;
    }
    runner_.store(std::this_thread::get_id());
    work();
    runner_.store({});
    bool isWaitedFor = false;
    {
      const std::lock_guard lock(mutex_);
      isRunning_ = false;
      isWaitedFor = !queue_.empty();
    }
    if (isWaitedFor) changed_.notify_one();
    return true;
  }

  void run([[maybe_unused]] const std::string& label) {
#if defined(__linux__)
    // The kernel keeps 15 characters of a thread's name; the end of a dotted label tells more than its start.
    const auto name = label.size() > 15 ? label.substr(label.size() - 15) : label;
    pthread_setname_np(pthread_self(), name.c_str());
#endif
    std::unique_lock lock(mutex_);
    while (waitForWork(lock)) {
      Work work = std::move(queue_.front());
      queue_.pop_front();
      isRunning_ = true;
      lock.unlock();
      runner_.store(std::this_thread::get_id());
      work();
      work = nullptr;
      runner_.store({});
      lock.lock();
      isRunning_ = false;
    }
  }

  /// Waits until something is queued and nothing runs; false at the end, with everything done.
  bool waitForWork(std::unique_lock<std::mutex>& lock) {
    while (true) {
      timers_.moveDue(std::chrono::steady_clock::now(), queue_);
      if (!isRunning_ && !queue_.empty()) return true;
      if (!isRunning_ && closing_) return false;
      if (const auto due = timers_.nextDue()) {
        changed_.wait_until(lock, *due);
      } else {
        changed_.wait(lock);
      }
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Work> queue_;
  TimerStore timers_;
  bool closing_ = false;
  bool isRunning_ = false;
  /// Who is the queue at this moment; nobody's id while nothing runs.
  std::atomic<std::thread::id> runner_;
  // Last: the thread uses all of the above.
  std::thread thread_;
};

}  // namespace

std::unique_ptr<SerialQueue> makeThreadSerialQueue(std::string label) {
  return std::make_unique<ThreadSerialQueue>(std::move(label));
}

}  // namespace quillmere
