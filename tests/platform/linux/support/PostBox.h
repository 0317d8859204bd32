// A main thread that runs when the test says so.
#pragma once

#include <unistd.h>

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "runtime/Executor.h"

namespace quillmere::support {

/// Collects what is posted from other threads until the test's own thread runs it.
class PostBox final : public Executor {
 public:
  void post(Work work) override {
    const std::lock_guard lock(mutex_);
    works_.push_back(std::move(work));
  }
  TimerID postAfter(Duration, Work) override { return 0; }
  void cancelTimer(TimerID) override {}
  [[nodiscard]] bool isCurrent() const override { return true; }

  void run() {
    std::vector<Work> works;
    {
      const std::lock_guard lock(mutex_);
      works.swap(works_);
    }
    for (const auto& work : works) work();
  }
  /// Runs what comes until the condition holds; false if it does not within twenty seconds.
  bool becomes(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
      run();
      if (condition()) return true;
      ::usleep(1000);
    }
    return false;
  }

 private:
  std::mutex mutex_;
  std::vector<Work> works_;
};

}  // namespace quillmere::support
