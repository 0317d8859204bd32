// Framing, and a descriptor on the loop for what would have to wait.
#include "process/SocketChannel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "loop/DescriptorWatch.h"
#include "loop/HostLoop.h"

namespace quillmere {

namespace {

using Length = std::uint32_t;

/// Both ends run on one machine: a length is written as it lies in memory.
std::string frame(const std::string& message) {
  const auto length = static_cast<Length>(message.size());
  std::string bytes(reinterpret_cast<const char*>(&length), sizeof length);
  return bytes += message;
}

}  // namespace

struct SocketChannel::State {
  int socket;
  ChannelEvents events;
  std::atomic<bool> isEnding = false;
  std::mutex mutex;
  std::string waiting;    ///< Under the mutex: what the socket has not taken yet.
  bool isBroken = false;  ///< Under the mutex.
  // What follows is the loop's own.
  std::string received;
  std::optional<DescriptorWatch> watch;

  /// Under the mutex: hands over what the socket takes now.
  void flush() {
    while (!isBroken && !waiting.empty()) {
      const auto count = ::send(socket, waiting.data(), waiting.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
      if (count > 0) {
        waiting.erase(0, static_cast<std::size_t>(count));
      } else if (count == 0 || errno == EAGAIN || errno == EWOULDBLOCK) {
        return;
      } else if (errno != EINTR) {
        isBroken = true;
      }
    }
  }

  /// True if the other end has taken everything.
  bool drain() {
    const std::scoped_lock lock(mutex);
    flush();
    return !isBroken && waiting.empty();
  }

  /// False once nothing more is to come.
  bool read() {
    std::array<char, 65536> buffer;
    const auto count = ::recv(socket, buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (count == 0) return false;
    if (count < 0) return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    received.append(buffer.data(), static_cast<std::size_t>(count));
    return deliver();
  }

  /// Hands out every whole message; false for bytes that are none.
  bool deliver() {
    std::size_t at = 0;
    while (received.size() - at >= sizeof(Length)) {
      Length length = 0;
      received.copy(reinterpret_cast<char*>(&length), sizeof length, at);
      if (length > largestMessage) return false;
      if (received.size() - at - sizeof length < length) break;
      auto message = received.substr(at + sizeof length, length);
      at += sizeof length + length;
      if (isEnding) return false;
      events.received(std::move(message));
    }
    received.erase(0, at);
    return true;
  }

  void begin(HostLoop& loop) {
    watch.emplace(loop, socket, readable, [this](GIOCondition come) { serve(come); });
    // Something may have been sent before this.
    update();
  }

  void serve(GIOCondition come) {
    if ((come & G_IO_OUT) != 0 && drain() && events.drained && !isEnding) events.drained();
    if ((come & (G_IO_IN | G_IO_HUP | G_IO_ERR)) != 0 && !read()) {
      finish();
    } else {
      update();
    }
  }

  /// Waits for what there is to wait for now.
  void update() {
    if (!watch) return;
    bool isOver = false;
    {
      const std::scoped_lock lock(mutex);
      isOver = isBroken;
      if (!isOver) watch->want(waiting.empty() ? readable : readableOrWritable);
    }
    if (isOver) finish();
  }

  void finish() {
    watch.reset();
    {
      const std::scoped_lock lock(mutex);
      isBroken = true;
      waiting.clear();
    }
    ::shutdown(socket, SHUT_RDWR);
    if (!isEnding) events.closed();
  }
};

SocketChannel::SocketChannel(int descriptor, ChannelEvents events)
    : loop_(HostLoop::ofProcess()), state_(std::make_shared<State>()) {
  state_->socket = descriptor;
  state_->events = std::move(events);
  loop_->post([&loop = *loop_, state = state_] {
    if (!state->isEnding) state->begin(loop);
  });
}

SocketChannel::~SocketChannel() {
  {
    const std::scoped_lock lock(state_->mutex);
    state_->flush();
  }
  state_->isEnding = true;
  loop_->perform([this] { state_->watch.reset(); });
  ::close(state_->socket);
}

std::size_t SocketChannel::waitingBytes() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->waiting.size();
}

void SocketChannel::send(const std::string& message) {
  const auto bytes = frame(message);
  const std::scoped_lock lock(state_->mutex);
  if (state_->isBroken) return;
  const bool wasEmpty = state_->waiting.empty();
  state_->waiting += bytes;
  if (wasEmpty) state_->flush();
  if (state_->waiting.size() > mostWaiting) state_->isBroken = true;
  if (!state_->isBroken && (state_->waiting.empty() || !wasEmpty)) return;
  // The loop waits for the socket to take more, or ends it. It knows already where something waited before.
  loop_->post([state = state_] { state->update(); });
}

}  // namespace quillmere
