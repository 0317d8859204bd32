// A line between two processes of the program that carries whole messages both ways.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace quillmere {

/// Both come on a thread of the channel's own: `received` once a message; `closed` once, last of all, when the other
/// end has closed or ended, reads nothing any more, or sends what is no message. Neither comes once the channel's
/// destructor has begun.
struct ChannelEvents {
  std::function<void(std::string message)> received;
  std::function<void()> closed;
};

/// The destructor is not to be called from within an event.
class Channel {
 public:
  virtual ~Channel() = default;
  /// Never waits for the other end. Into a closed channel: nothing happens. [any]
  virtual void send(const std::string& message) = 0;
};

/// Starts the process that draws the windows.
class WindowsLauncher {
 public:
  virtual ~WindowsLauncher() = default;
  /// The line to a newly started process, which ends when this end is destroyed. Null, and a line in the log, where it
  /// can't be started. Does not wait for the process. [main]
  [[nodiscard]] virtual std::unique_ptr<Channel> launch(ChannelEvents events) = 0;
};

}  // namespace quillmere
