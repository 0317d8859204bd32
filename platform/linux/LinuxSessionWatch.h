// Notices the end of the desktop session by its display, on which a program without windows has nothing else to hold.
#pragma once

#include <functional>
#include <memory>
#include <thread>

#include "platform/SessionWatch.h"
#include "runtime/Executor.h"

namespace quillmere {

/// Holds a connection to the display server that the environment names, and waits for its end on a thread of its own.
/// [main]
class LinuxSessionWatch final : public SessionWatch {
 public:
  explicit LinuxSessionWatch(Executor& main);
  ~LinuxSessionWatch() override;
  LinuxSessionWatch(const LinuxSessionWatch&) = delete;
  LinuxSessionWatch& operator=(const LinuxSessionWatch&) = delete;

  void onEnded(std::function<void()> callback) override;

 private:
  class Display;

  Executor& main_;
  std::unique_ptr<Display> display_;
  int wake_ = -1;
  std::thread thread_;
};

}  // namespace quillmere
