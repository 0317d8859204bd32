// On Linux the kernel keeps the time and picks the thread; elsewhere a condition variable does.
#include "runtime/ParkingLot.h"

#if defined(__linux__)
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "runtime/Threads.h"
#else
#include <condition_variable>
#include <mutex>
#endif

namespace quillmere {

namespace {

#if defined(__linux__)

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {
    if (number_ < 0) preconditionFailure("no file descriptor is left for a queue to wait at");
  }
  ~Descriptor() { close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

/// One epoll set that all threads wait on: an event wakes one of them, the one that came last and is still warm.
class EpollParkingLot final : public ParkingLot {
 public:
  EpollParkingLot() {
    add(calls_);
    add(alarm_);
  }

  void wait() override {
    std::array<epoll_event, 2> events{};
    epoll_wait(set_.number(), events.data(), static_cast<int>(events.size()), -1);
  }

  void call() override { eventfd_write(calls_.number(), 1); }

  void setAlarm(std::optional<MonotonicTime> time) override {
    itimerspec value{};
    if (time) {
      // A time of zero would mean none at all.
      const std::int64_t nanos = std::max<std::int64_t>(1, time->time_since_epoch().count());
      value.it_value.tv_sec = static_cast<time_t>(nanos / 1'000'000'000);
      value.it_value.tv_nsec = static_cast<long>(nanos % 1'000'000'000);
    }
    timerfd_settime(alarm_.number(), TFD_TIMER_ABSTIME, &value, nullptr);
  }

 private:
  /// Told once for each time it happens, so that nobody has to read it off: a call, or the alarm.
  void add(const Descriptor& descriptor) {
    epoll_event event{};
    event.events = EPOLLIN | EPOLLET;
    if (epoll_ctl(set_.number(), EPOLL_CTL_ADD, descriptor.number(), &event) != 0) {
      preconditionFailure("a queue's descriptor could not be watched");
    }
  }

  Descriptor set_{epoll_create1(EPOLL_CLOEXEC)};
  Descriptor calls_{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  Descriptor alarm_{timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)};
};

#else

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

#endif

}  // namespace

std::unique_ptr<ParkingLot> makeParkingLot() {
#if defined(__linux__)
  return std::make_unique<EpollParkingLot>();
#else
  return std::make_unique<ConditionParkingLot>();
#endif
}

}  // namespace quillmere
