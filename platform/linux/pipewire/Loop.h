// The thread on which all talk with the daemon happens, and timers and wake-up calls on it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "runtime/Clocks.h"

struct pw_loop;
struct pw_thread_loop;
struct spa_source;

namespace quillmere::pipewire {

class Loop {
 public:
  Loop();
  /// stop() has been called.
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  /// False where the thread could not be started.
  bool start();
  /// Ends the thread. Not on the loop, not locked.
  void stop();

  // Locks are recursive; on the loop itself it is held already.
  void lock();
  void unlock();

  [[nodiscard]] pw_loop* raw() const;

 private:
  pw_thread_loop* loop_;
};

/// Runs a callback once a delay has passed. All calls locked or on the loop.
class LoopTimer {
 public:
  LoopTimer(Loop& loop, std::function<void()> fire);
  ~LoopTimer();
  LoopTimer(const LoopTimer&) = delete;
  LoopTimer& operator=(const LoopTimer&) = delete;
  /// Replaces a delay that is still running.
  void arm(Duration delay);
  /// At a time in nanoseconds of the monotonic clock; at once if it has passed.
  void armAt(std::uint64_t nanos);
  void disarm();

 private:
  Loop& loop_;
  std::function<void()> fire_;
  spa_source* source_;
};

/// Runs a callback soon, outside whatever callback runs now; several calls may become one.
class LoopSignal {
 public:
  LoopSignal(Loop& loop, std::function<void()> fire);
  ~LoopSignal();
  LoopSignal(const LoopSignal&) = delete;
  LoopSignal& operator=(const LoopSignal&) = delete;
  void raise();

 private:
  Loop& loop_;
  std::function<void()> fire_;
  spa_source* source_;
};

/// Holds the loop for a scope.
class LoopLock {
 public:
  explicit LoopLock(Loop& loop) : loop_(loop) { loop_.lock(); }
  ~LoopLock() { loop_.unlock(); }
  LoopLock(const LoopLock&) = delete;
  LoopLock& operator=(const LoopLock&) = delete;

 private:
  Loop& loop_;
};

}  // namespace quillmere::pipewire
