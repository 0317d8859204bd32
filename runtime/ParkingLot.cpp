// A condition variable, where the host has nothing better.
#include "runtime/ParkingLot.h"

#include <condition_variable>
#include <mutex>

#include "runtime/HostThreads.h"

namespace quillmere {

namespace {

/// Every waiting thread knows the alarm, and the first to see it come takes it from the others.
class ConditionParkingLot final : public ParkingLot {
 public:
  void wait() override {
    std::unique_lock lock(mutex_);
    while (!isCalled_) {
      if (!alarm_) {
        changed_.wait(lock);
      } else if (std::chrono::steady_clock::now() >= *alarm_) {
        alarm_.reset();
        return;
      } else {
        const auto until = *alarm_;
        changed_.wait_until(lock, until);
      }
    }
    isCalled_ = false;
  }

  void call() override {
    {
      const std::lock_guard lock(mutex_);
      isCalled_ = true;
    }
    changed_.notify_one();
  }

  void setAlarm(std::optional<MonotonicTime> time) override {
    {
      const std::lock_guard lock(mutex_);
      alarm_ = time;
    }
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isCalled_ = false;
  std::optional<MonotonicTime> alarm_;
};

}  // namespace

std::unique_ptr<ParkingLot> makeParkingLot() {
  const auto make = hostThreads().makeParkingLot;
  return make != nullptr ? make() : std::make_unique<ConditionParkingLot>();
}

}  // namespace quillmere
