// A thread that is there while there is work for it, and comes later where the system has none to give at the moment.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace quillmere {

class ThreadAlarm;

/// Its owner's mutex guards it: what says so is called with that locked, all else without. [any]
class EventualThread {
 public:
  /// `body` is what the thread runs, without the mutex; it calls ended() before it comes to its end.
  EventualThread(std::mutex& mutex, std::string name, std::function<void()> body);
  /// finish() has been called.
  ~EventualThread();
  EventualThread(const EventualThread&) = delete;
  EventualThread& operator=(const EventualThread&) = delete;

  /// With the mutex locked: from now on there is a thread until it says that it ends. Where the system refuses one and
  /// the host has alarms it is asked again each second; without alarms that is std::system_error.
  void ensure();
  /// With the mutex locked: whether there is a thread, and it has not said that it ends.
  [[nodiscard]] bool isThere() const { return isThere_; }
  /// On the thread, with the mutex locked until it is at its end.
  void ended() { isThere_ = false; }
  /// Waits until the thread has ended, which the body knows to do. If one was wanted and never given, the body runs
  /// here.
  void finish();

 private:
  std::mutex& mutex_;
  const std::string name_;
  const std::function<void()> body_;
  std::thread thread_;
  bool isThere_ = false;
  bool isOwed_ = false;
  /// Made when it is needed first.
  std::unique_ptr<ThreadAlarm> again_;
};

}  // namespace quillmere
