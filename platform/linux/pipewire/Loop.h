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

/// The loop itself: its own thread, and every other one between lock() and unlock().
class Loop {
 public:
  /// [any]
  Loop();
  /// stop() has been called. [any but loop]
  ~Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;

  /// False where the thread could not be started. [any but loop]
  bool start();
  /// Ends the thread. [any but loop]
  void stop();

  /// Waits for the callback that runs, if one does. Locks are recursive; on the loop's own thread it is held already.
  /// [any]
  void lock();
  /// [loop]
  void unlock();

  /// [any]
  [[nodiscard]] pw_loop* raw() const;

 private:
  pw_thread_loop* loop_;
};

/// Runs a callback on [loop] once a delay has passed. [loop] throughout; the destructor also where the loop has ended.
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

/// Runs a callback on [loop] soon, outside whatever callback runs now; several calls may become one. [loop]
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

/// Holds the loop for a scope, which is [loop] by that. [any]
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
