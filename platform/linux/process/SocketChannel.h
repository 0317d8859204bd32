// A channel over a connected stream socket: each message after its length.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/Channel.h"

namespace quillmere {

class HostLoop;

/// [any]; events come on [host], and the destructor waits for the one that is under way.
class SocketChannel final : public Channel {
 public:
  /// Bytes that are kept for an end that does not read; one that lets more gather is given up.
  static constexpr std::size_t mostWaiting = std::size_t{32} << 20U;

  /// Takes the descriptor over.
  SocketChannel(int descriptor, ChannelEvents events);
  ~SocketChannel() override;
  SocketChannel(const SocketChannel&) = delete;
  SocketChannel& operator=(const SocketChannel&) = delete;

  void send(const std::string& message) override;
  [[nodiscard]] std::size_t waitingBytes() const override;
  /// Nothing to end: whose process the other end is is known to who made the socket.
  void giveUp() override {}

 private:
  struct State;
  const std::shared_ptr<HostLoop> loop_;
  const std::shared_ptr<State> state_;
};

}  // namespace quillmere
