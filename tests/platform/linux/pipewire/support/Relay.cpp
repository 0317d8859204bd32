#include "support/Relay.h"

#include <fcntl.h>
#include <poll.h>
#include <spa/pod/builder.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace quillmere::test {
namespace {

constexpr int quietMillis = 100;

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) throw std::runtime_error("the path of a socket is too long: " + path);
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return address;
}

void sayAll(int socket, const std::vector<std::uint8_t>& message) {
  if (!message.empty()) static_cast<void>(send(socket, message.data(), message.size(), MSG_NOSIGNAL));
}

}  // namespace

Relay::Relay(const std::string& name) {
  const std::string folder = std::getenv("XDG_RUNTIME_DIR");
  path_ = folder + "/" + name;
  daemonPath_ = folder + "/pipewire-0";
  const auto address = addressOf(path_);
  listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  unlink(path_.c_str());
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 || listen(listener_, 8) != 0) {
    throw std::runtime_error("no socket at " + path_);
  }
  wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  thread_ = std::thread([this] { run(); });
}

Relay::~Relay() {
  isEnding_ = true;
  eventfd_write(wake_, 1);
  thread_.join();
  for (auto& pair : pairs_) close(pair);
  ::close(wake_);
  ::close(listener_);
  unlink(path_.c_str());
}

void Relay::say(std::vector<std::uint8_t> message, std::size_t place) {
  const std::lock_guard lock(mutex_);
  toSay_ = std::move(message);
  placeToSayIt_ = place;
  eventfd_write(wake_, 1);
}

void Relay::answerEverybodyWith(std::vector<std::uint8_t> message) {
  const std::lock_guard lock(mutex_);
  answer_ = std::move(message);
}

void Relay::run() {
  while (!isEnding_) {
    std::vector<pollfd> watched{{listener_, POLLIN, 0}, {wake_, POLLIN, 0}};
    for (const auto& pair : pairs_) {
      watched.push_back({pair.program, POLLIN, 0});
      watched.push_back({pair.daemon, POLLIN, 0});
    }
    const int ready = poll(watched.data(), watched.size(), quietMillis);
    if (ready < 0) continue;
    eventfd_t ignored = 0;
    if ((watched[1].revents & POLLIN) != 0) eventfd_read(wake_, &ignored);
    for (std::size_t i = 0; i < pairs_.size(); ++i) {
      const bool programTalks = watched[2 + 2 * i].revents != 0;
      const bool daemonTalks = watched[3 + 2 * i].revents != 0;
      if (programTalks && !handOn(pairs_[i].program, pairs_[i].daemon)) close(pairs_[i]);
      if (pairs_[i].program >= 0 && daemonTalks && !handOn(pairs_[i].daemon, pairs_[i].program)) close(pairs_[i]);
    }
    std::erase_if(pairs_, [](const Pair& pair) { return pair.program < 0; });
    if ((watched[0].revents & POLLIN) != 0) accept();
    if (ready == 0) {
      const std::lock_guard lock(mutex_);
      if (placeToSayIt_ < pairs_.size()) sayAll(pairs_[placeToSayIt_].program, toSay_);
      toSay_.clear();
    }
  }
}

void Relay::accept() {
  Pair pair;
  pair.program = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (pair.program < 0) return;
  ++accepted_;
  const std::lock_guard lock(mutex_);
  if (!answer_.empty()) {
    sayAll(pair.program, answer_);
  } else {
    pair.daemon = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = addressOf(daemonPath_);
    if (connect(pair.daemon, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
      ::close(pair.daemon);
      ::close(pair.program);
      return;
    }
  }
  ++standing_;
  pairs_.push_back(pair);
}

bool Relay::handOn(int from, int to) {
  std::array<char, 65536> text{};
  const auto got = recv(from, text.data(), text.size(), 0);
  if (got <= 0) return false;
  for (ssize_t done = 0; to >= 0 && done < got;) {
    const auto sent = send(to, text.data() + done, static_cast<std::size_t>(got - done), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    done += sent;
  }
  return true;
}

void Relay::close(Pair& pair) {
  if (pair.program < 0) return;
  ::close(pair.program);
  if (pair.daemon >= 0) ::close(pair.daemon);
  pair.program = pair.daemon = -1;
  --standing_;
}

// A message that says of itself that it comes with more descriptors than a message can have.
std::vector<std::uint8_t> garbage() { return std::vector<std::uint8_t>(64, 0xFF); }

std::vector<std::uint8_t> reportOfError(int result) {
  constexpr std::uint32_t core = 0;
  constexpr std::uint32_t errorEvent = 3;
  std::array<std::uint8_t, 512> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  spa_pod_builder_add_struct(&builder, SPA_POD_Int(0), SPA_POD_Int(0), SPA_POD_Int(result),
                             SPA_POD_String("not for you"));
  const std::uint32_t size = builder.state.offset;
  const std::array<std::uint32_t, 4> header{core, errorEvent << 24U | size, 0, 0};
  std::vector<std::uint8_t> message(sizeof(header) + size);
  std::memcpy(message.data(), header.data(), sizeof(header));
  std::memcpy(message.data() + sizeof(header), memory.data(), size);
  return message;
}

}  // namespace quillmere::test
