// Framing, and a thread that reads and writes what would have to wait.
#include "process/SocketChannel.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

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
  int wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  ChannelEvents events;
  std::atomic<bool> isEnding = false;
  std::mutex mutex;
  std::string waiting;    ///< Under the mutex: what the socket has not taken yet.
  bool isBroken = false;  ///< Under the mutex.
  std::string received;
  std::thread thread;

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

  void wakeUp() const {
    const std::uint64_t one = 1;
    static_cast<void>(!::write(wake, &one, sizeof one));
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

  void run() {
    bool isOpen = true;
    while (isOpen && !isEnding) {
      std::array<pollfd, 2> watched{{{socket, POLLIN, 0}, {wake, POLLIN, 0}}};
      {
        const std::scoped_lock lock(mutex);
        if (isBroken) break;
        if (!waiting.empty()) watched[0].events |= POLLOUT;
      }
      if (::poll(watched.data(), watched.size(), -1) < 0) continue;
      std::uint64_t count = 0;
      if (watched[1].revents != 0) static_cast<void>(!::read(wake, &count, sizeof count));
      if ((watched[0].revents & POLLOUT) != 0 && drain() && events.drained && !isEnding) events.drained();
      if ((watched[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) isOpen = read();
    }
    {
      const std::scoped_lock lock(mutex);
      isBroken = true;
      waiting.clear();
    }
    ::shutdown(socket, SHUT_RDWR);
    if (!isEnding) events.closed();
  }
};

SocketChannel::SocketChannel(int descriptor, ChannelEvents events) : state_(std::make_unique<State>()) {
  state_->socket = descriptor;
  state_->events = std::move(events);
  state_->thread = std::thread([state = state_.get()] { state->run(); });
}

SocketChannel::~SocketChannel() {
  {
    const std::scoped_lock lock(state_->mutex);
    state_->flush();
  }
  state_->isEnding = true;
  state_->wakeUp();
  state_->thread.join();
  ::close(state_->socket);
  ::close(state_->wake);
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
  if (state_->isBroken || !state_->waiting.empty()) state_->wakeUp();
}

}  // namespace quillmere
