// One end of a line of messages, as a test holds it.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/tabs/Frames.h"

namespace quillmere::support {

/// Longer than anything takes on a busy machine.
inline constexpr auto deadline = std::chrono::seconds(20);

/// Whether the condition holds before the deadline.
inline bool becomes(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    ::usleep(1000);
  }
  return true;
}

/// Reads from one descriptor and writes to another, or both ways over one. Closes what it is given.
class Line {
 public:
  Line(int input, int output) : input_(input), output_(output) {}
  explicit Line(int socket) : Line(socket, socket) {}
  Line(Line&& other) noexcept
      : input_(std::exchange(other.input_, -1)),
        output_(std::exchange(other.output_, -1)),
        reader_(std::move(other.reader_)) {}
  ~Line() { close(); }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;
  Line& operator=(Line&&) = delete;

  [[nodiscard]] bool isOpen() const { return input_ >= 0; }
  void close() {
    if (output_ != input_ && output_ >= 0) ::close(output_);
    if (input_ >= 0) ::close(input_);
    input_ = output_ = -1;
  }

  /// The other end's next write fails, while it still can be told something.
  void takeNoMore() const { ::shutdown(input_, SHUT_RD); }

  void say(std::string_view message) { put(tabs::framed(message)); }
  /// Bytes as they are; false once the other end takes none.
  bool put(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto count = ::write(output_, bytes.data(), bytes.size());
      if (count > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
        continue;
      }
      pollfd watched{output_, POLLOUT, 0};
      if (errno != EAGAIN || ::poll(&watched, 1, 20'000) <= 0) return false;
    }
    return true;
  }

  /// The next message; absent at the end of the line, or if none comes.
  std::optional<std::string> hear() {
    for (;;) {
      if (auto message = reader_.next()) return message;
      pollfd watched{input_, POLLIN, 0};
      if (::poll(&watched, 1, 20'000) <= 0) return std::nullopt;
      std::array<char, 4096> bytes;
      const auto count = ::read(input_, bytes.data(), bytes.size());
      if (count <= 0) return std::nullopt;
      reader_.append({bytes.data(), static_cast<std::size_t>(count)});
    }
  }
  /// Whether the other end closes the line.
  bool ends() {
    std::array<char, 4096> bytes;
    for (;;) {
      pollfd watched{input_, POLLIN, 0};
      if (::poll(&watched, 1, 20'000) <= 0) return false;
      const auto count = ::read(input_, bytes.data(), bytes.size());
      if (count <= 0) return true;
    }
  }

 private:
  int input_;
  int output_;
  tabs::FrameReader reader_;
};

}  // namespace quillmere::support
