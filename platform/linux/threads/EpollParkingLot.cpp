// An event for calls and a timer for the alarm, on one epoll set.
#include "threads/EpollParkingLot.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>

#include <array>

#include "runtime/Threads.h"
#include "threads/TimerDescriptor.h"

namespace quillmere {

namespace {

class EpollParkingLot final : public ParkingLot {
 public:
  EpollParkingLot() {
    add(calls_);
    add(alarm_.descriptor());
  }

  void wait() override {
    std::array<epoll_event, 2> events{};
    epoll_wait(set_.number(), events.data(), static_cast<int>(events.size()), -1);
  }

  void call() override { eventfd_write(calls_.number(), 1); }

  void setAlarm(std::optional<MonotonicTime> time) override { alarm_.set(time); }

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
  TimerDescriptor alarm_;
};

}  // namespace

std::unique_ptr<ParkingLot> makeEpollParkingLot() { return std::make_unique<EpollParkingLot>(); }

}  // namespace quillmere
