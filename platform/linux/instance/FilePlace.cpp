// A lock that ends with its process, and datagrams.
#include "instance/FilePlace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace quillmere::instance {

namespace {

constexpr const char* name = "app.quillmere.host";
constexpr std::string_view word = "activate";
constexpr std::size_t longestMessage = 4096;

/// A line each: the word, the section or nothing, the token or nothing.
std::string written(const ActivationRequest& request) {
  return std::string(word) + '\n' + request.section.value_or("") + '\n' + request.activationToken;
}

ActivationRequest readRequest(std::string_view message) {
  ActivationRequest request;
  const auto first = message.find('\n');
  if (first == std::string_view::npos) return request;
  message.remove_prefix(first + 1);
  const auto second = std::min(message.find('\n'), message.size());
  if (second > 0) request.section = std::string(message.substr(0, second));
  if (second < message.size()) request.activationToken = std::string(message.substr(second + 1));
  return request;
}

}  // namespace

FilePlace::Descriptor::~Descriptor() {
  if (value_ >= 0) ::close(value_);
}

FilePlace::Descriptor& FilePlace::Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(value_, other.value_);
  return *this;
}

FilePlace::FilePlace(const std::string& folder, const std::optional<ActivationRequest>& request,
                     std::function<void(const ActivationRequest&)> activated)
    : activated_(std::move(activated)), loop_(HostLoop::ofProcess()) {
  const auto lockPath = folder + "/" + name + ".lock";
  const auto socketPath = folder + "/" + name + ".activate";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socketPath.size() >= sizeof(address.sun_path)) return;
  std::memcpy(address.sun_path, socketPath.c_str(), socketPath.size());
  lock_ = Descriptor(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  socket_ = Descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!lock_ || !socket_) return;
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (::flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) return;
    // The lock alone decides; a holder that does not listen is left in peace.
    result_ = Outcome::second;
    if (!request) return;
    const auto message = written(*request);
    static_cast<void>(::sendto(socket_.get(), message.data(), message.size(), 0, generic, sizeof(address)));
    return;
  }
  result_ = Outcome::first;
  // Whatever lies there is of an instance that has ended: the lock is ours.
  ::unlink(socketPath.c_str());
  if (::bind(socket_.get(), generic, sizeof(address)) != 0) return;
  loop_->perform([this] { watch_.emplace(*loop_, socket_.get(), readable, [this](GIOCondition) { listen(); }); });
}

FilePlace::~FilePlace() {
  loop_->perform([this] { watch_.reset(); });
}

void FilePlace::listen() const {
  // One at a time: whoever knocks without end keeps nobody else from being heard.
  std::array<char, longestMessage> message{};
  const auto length = ::recv(socket_.get(), message.data(), message.size(), 0);
  if (length >= 0) activated_(readRequest({message.data(), static_cast<std::size_t>(length)}));
}

}  // namespace quillmere::instance
