#include "runtime/EventualThread.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "runtime/Clocks.h"
#include "runtime/HostThreads.h"
#include "runtime/ThreadAlarm.h"

namespace quillmere {

namespace {
constexpr auto pause = std::chrono::seconds(1);
}  // namespace

EventualThread::EventualThread(std::mutex& mutex, std::string name, std::function<void()> body)
    : mutex_(mutex), name_(std::move(name)), body_(std::move(body)) {}

EventualThread::~EventualThread() = default;

void EventualThread::ensure() {
  if (isThere_) return;
  // The last one has let go of the mutex for good.
  if (thread_.joinable()) thread_.join();
  try {
    thread_ = std::thread([this] {
      if (const auto name = hostThreads().nameThread) name(name_);
      body_();
    });
    isThere_ = true;
    isOwed_ = false;
  } catch (const std::system_error&) {
    // Too many run in this session, or there is no memory for its stack. That passes.
    const auto makeAlarm = hostThreads().makeAlarm;
    if (makeAlarm == nullptr) throw;
    isOwed_ = true;
    if (!again_) {
      again_ = makeAlarm([this] {
        const std::lock_guard lock(mutex_);
        if (isOwed_) ensure();
      });
    }
    again_->set(std::chrono::steady_clock::now() + pause);
  }
}

void EventualThread::finish() {
  bool isOwed = false;
  {
    const std::lock_guard lock(mutex_);
    isOwed = std::exchange(isOwed_, false);
    // Whoever runs the body is the thread, for all that the body asks for.
    if (isOwed) isThere_ = true;
  }
  again_.reset();
  if (thread_.joinable()) thread_.join();
  if (isOwed) body_();
}

}  // namespace quillmere
