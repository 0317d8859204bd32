#include "Loop.h"

#include <pipewire/pipewire.h>

#include <mutex>

namespace quillmere::pipewire {
namespace {

pw_thread_loop* makeLoop() {
  static std::once_flag once;
  std::call_once(once, [] { pw_init(nullptr, nullptr); });
  return pw_thread_loop_new("quillmere-audio", nullptr);
}

}  // namespace

Loop::Loop() : loop_(makeLoop()) {}
Loop::~Loop() {
  if (loop_ != nullptr) pw_thread_loop_destroy(loop_);
}
bool Loop::start() { return loop_ != nullptr && pw_thread_loop_start(loop_) == 0; }
void Loop::stop() { pw_thread_loop_stop(loop_); }
void Loop::lock() { pw_thread_loop_lock(loop_); }
void Loop::unlock() { pw_thread_loop_unlock(loop_); }
pw_loop* Loop::raw() const { return pw_thread_loop_get_loop(loop_); }

LoopTimer::LoopTimer(Loop& loop, std::function<void()> fire)
    : loop_(loop),
      fire_(std::move(fire)),
      source_(pw_loop_add_timer(
          loop.raw(), [](void* data, std::uint64_t) { static_cast<LoopTimer*>(data)->fire_(); }, this)) {}
LoopTimer::~LoopTimer() { pw_loop_destroy_source(loop_.raw(), source_); }
void LoopTimer::arm(Duration delay) {
  timespec value{};
  value.tv_sec = static_cast<time_t>(delay.count() / 1'000'000'000);
  value.tv_nsec = static_cast<long>(delay.count() % 1'000'000'000);
  if (value.tv_sec == 0 && value.tv_nsec == 0) value.tv_nsec = 1;
  pw_loop_update_timer(loop_.raw(), source_, &value, nullptr, false);
}
void LoopTimer::armAt(std::uint64_t nanos) {
  timespec value{};
  value.tv_sec = static_cast<time_t>(nanos / 1'000'000'000);
  value.tv_nsec = static_cast<long>(nanos % 1'000'000'000);
  pw_loop_update_timer(loop_.raw(), source_, &value, nullptr, true);
}
void LoopTimer::disarm() { pw_loop_update_timer(loop_.raw(), source_, nullptr, nullptr, false); }

LoopSignal::LoopSignal(Loop& loop, std::function<void()> fire)
    : loop_(loop),
      fire_(std::move(fire)),
      source_(pw_loop_add_event(
          loop.raw(), [](void* data, std::uint64_t) { static_cast<LoopSignal*>(data)->fire_(); }, this)) {}
LoopSignal::~LoopSignal() { pw_loop_destroy_source(loop_.raw(), source_); }
void LoopSignal::raise() { pw_loop_signal_event(loop_.raw(), source_); }

}  // namespace quillmere::pipewire
