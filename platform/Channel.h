// A line between two processes of the program that carries whole messages both ways.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace quillmere {

/// All come in order on a thread of the host's, where nothing may wait: `received` once a message; `closed` once, last
/// of all, when the other end has closed or ended, reads nothing any more, or sends what is no message; `drained`,
/// which may be absent, when the other end has taken all that had to wait for it. None comes once the channel's
/// destructor has begun.
struct ChannelEvents {
  std::function<void(std::string message)> received;
  std::function<void()> closed;
  std::function<void()> drained = {};
};

/// The destructor is not to be called from within an event.
class Channel {
 public:
  /// Bytes. A longer message is taken for garbage, and ends the channel.
  static constexpr std::size_t largestMessage = std::size_t{16} << 20U;

  virtual ~Channel() = default;
  /// Never waits for the other end. Into a closed channel: nothing happens. [any]
  virtual void send(const std::string& message) = 0;
  /// Bytes that the other end has left waiting; `drained` follows on any number but 0, unless the channel closes. [any]
  [[nodiscard]] virtual std::size_t waitingBytes() const = 0;
  /// Nothing more is expected of the other end: its process, if this end has started it, is ended at once, whatever it
  /// is at, where it would otherwise be left to end by itself. [any]
  virtual void giveUp() = 0;
};

/// Starts the process that draws the windows.
class WindowsLauncher {
 public:
  virtual ~WindowsLauncher() = default;
  /// Starts the process ahead of the next launch(), which will then find it further on. Nothing happens where it can't
  /// be started, or has been already. Does not wait for the process. [main]
  virtual void prepare() {}
  /// The line to a newly started process, which ends when this end is destroyed. Null, and a line in the log, where it
  /// can't be started. Does not wait for the process. [main]
  [[nodiscard]] virtual std::unique_ptr<Channel> launch(ChannelEvents events) = 0;
};

}  // namespace quillmere
