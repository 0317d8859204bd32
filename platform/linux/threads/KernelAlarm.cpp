// The kernel's timer, watched by the host's loop.
#include "threads/KernelAlarm.h"

#include <unistd.h>

#include <cstdint>
#include <utility>

#include "loop/DescriptorWatch.h"
#include "loop/HostLoop.h"
#include "threads/TimerDescriptor.h"

namespace quillmere {

namespace {

class KernelAlarm final : public ThreadAlarm {
 public:
  explicit KernelAlarm(std::function<void()> ring) : loop_(HostLoop::ofProcess()) {
    loop_->perform([&] {
      watch_.emplace(*loop_, timer_.descriptor().number(), readable, [this, ring = std::move(ring)](GIOCondition) {
        std::uint64_t times = 0;
        // It may have been set anew since.
        if (::read(timer_.descriptor().number(), &times, sizeof times) > 0) ring();
      });
    });
  }
  ~KernelAlarm() override {
    loop_->perform([this] { watch_.reset(); });
  }
  KernelAlarm(const KernelAlarm&) = delete;
  KernelAlarm& operator=(const KernelAlarm&) = delete;

  void set(std::optional<MonotonicTime> time) override { timer_.set(time); }

 private:
  const std::shared_ptr<HostLoop> loop_;
  TimerDescriptor timer_;
  std::optional<DescriptorWatch> watch_;
};

}  // namespace

std::unique_ptr<ThreadAlarm> makeKernelAlarm(std::function<void()> ring) {
  return std::make_unique<KernelAlarm>(std::move(ring));
}

}  // namespace quillmere
