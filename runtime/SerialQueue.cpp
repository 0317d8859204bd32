// A serial queue on a thread of its own.
#include "runtime/SerialQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#if defined(__linux__)
#include <pthread.h>
#endif

#include "runtime/Threads.h"

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

  void sync(const Work& work) override {
    if (isCurrent()) preconditionFailure("a serial queue was asked to wait for itself");
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

  [[nodiscard]] bool isCurrent() const override { return std::this_thread::get_id() == thread_.get_id(); }

 private:
  void run(const std::string& label) {
#if defined(__linux__)
    // The kernel keeps 15 characters of a thread's name; the end of a dotted label tells more than its start.
    const auto name = label.size() > 15 ? label.substr(label.size() - 15) : label;
    pthread_setname_np(pthread_self(), name.c_str());
#endif
    std::unique_lock lock(mutex_);
    while (true) {
      changed_.wait(lock, [this] { return closing_ || !queue_.empty(); });
      if (queue_.empty()) return;
      Work work = std::move(queue_.front());
      queue_.pop_front();
      lock.unlock();
      work();
      work = nullptr;
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Work> queue_;
  bool closing_ = false;
  // Last: the thread uses all of the above.
  std::thread thread_;
};

}  // namespace

std::unique_ptr<SerialQueue> makeThreadSerialQueue(std::string label) {
  return std::make_unique<ThreadSerialQueue>(std::move(label));
}

}  // namespace quillmere
