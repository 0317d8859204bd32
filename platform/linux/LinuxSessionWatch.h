// Notices the end of the desktop session by its display, on which a program without windows has nothing else to hold,
// and what asks the program to end: SIGTERM, SIGINT, SIGHUP.
#pragma once

#include <functional>
#include <memory>

#include "platform/SessionWatch.h"
#include "runtime/Executor.h"

namespace quillmere {

class HostLoop;

/// Holds a connection to the display server that the environment names, and waits for its end on the host's loop. One
/// at a time in a process. [main]
class LinuxSessionWatch final : public SessionWatch {
 public:
  explicit LinuxSessionWatch(Executor& main);
  ~LinuxSessionWatch() override;
  LinuxSessionWatch(const LinuxSessionWatch&) = delete;
  LinuxSessionWatch& operator=(const LinuxSessionWatch&) = delete;

  void onEnded(std::function<void()> callback) override;
  void onEndRequested(std::function<void()> callback) override;

 private:
  class Display;
  class Signals;
  struct Watches;

  Executor& main_;
  const std::shared_ptr<HostLoop> loop_;
  std::unique_ptr<Display> display_;
  std::unique_ptr<Signals> signals_;
  std::unique_ptr<Watches> watches_;
};

}  // namespace quillmere
