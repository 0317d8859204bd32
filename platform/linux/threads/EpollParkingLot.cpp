// An event for calls and a timer for the alarm, on one epoll set.
#include "threads/EpollParkingLot.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "runtime/Threads.h"

namespace quillmere {

namespace {

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

}  // namespace

std::unique_ptr<ParkingLot> makeEpollParkingLot() { return std::make_unique<EpollParkingLot>(); }

}  // namespace quillmere
