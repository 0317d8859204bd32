// The one thread on which the process waits for what comes from outside: the bus, sockets, signals, the display's end.
#pragma once

#include <glib.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace quillmere {

/// A main context of GLib's on a thread of its own, which is [host]. It sleeps until something comes or is due. Nothing
/// that runs here may wait for anybody: everything else would wait with it.
class HostLoop : public std::enable_shared_from_this<HostLoop> {
 public:
  /// The process's loop. Its thread starts with the first who holds it and ends with the last. [any]
  [[nodiscard]] static std::shared_ptr<HostLoop> ofProcess();

  /// [any]
  HostLoop();
  /// Waits for the thread, and drops what was posted and has not begun. [any but host]
  ~HostLoop();
  HostLoop(const HostLoop&) = delete;
  HostLoop& operator=(const HostLoop&) = delete;

  /// Runs the work on the loop, later, in the order of the posts. [any]
  void post(std::function<void()> work);
  /// Runs the work on the loop, after all that was posted before, and waits for it; on the loop itself at once. [any]
  void perform(const std::function<void()>& work);
  /// [any]
  [[nodiscard]] bool isCurrent() const { return id_ == std::this_thread::get_id(); }
  /// Where sources are attached. [any]
  [[nodiscard]] GMainContext* context() const { return context_; }

  /// Something has been begun elsewhere that will come back here in any case: the thread doesn't end before. [host]
  void expectReturn() { ++expected_; }
  /// It has. [host]
  void noteReturn() { --expected_; }

 private:
  void run();

  GMainContext* context_;
  bool isEnding_ = false;
  int expected_ = 0;
  std::atomic<std::thread::id> id_{};
  /// Last, so that it starts when all is there.
  std::thread thread_;
};

}  // namespace quillmere
