// A connection that is never used: a Wayland compositor's socket, or an X server's.
#include "platform/linux/LinuxSessionWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace quillmere {

namespace {

std::string variable(const char* name) {
  const auto* value = std::getenv(name);
  return value != nullptr ? value : std::string();
}

/// -1 where there is none.
int connectToCompositor() {
  auto path = variable("WAYLAND_DISPLAY");
  if (path.empty()) return -1;
  if (path.front() != '/') path = variable("XDG_RUNTIME_DIR") + '/' + path;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return -1;
  path.copy(address.sun_path, path.size());
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (socket < 0) return -1;
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  ::close(socket);
  return -1;
}

}  // namespace

class LinuxSessionWatch::Display {
 public:
  Display() : compositor_(connectToCompositor()) {
    if (compositor_ >= 0 || variable("DISPLAY").empty()) return;
    // A server that nobody has answered closes the line after a while: the greeting has to be a whole one.
    server_.reset(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(server_.get()) != 0) server_.reset();
  }
  ~Display() {
    if (compositor_ >= 0) ::close(compositor_);
  }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  /// -1 where there is no display.
  [[nodiscard]] int descriptor() const { return server_ ? xcb_get_file_descriptor(server_.get()) : compositor_; }

  /// Takes what has come, which is of no interest; false once the line is broken.
  bool read() {
    if (!server_) {
      std::array<char, 256> bytes;
      return ::recv(compositor_, bytes.data(), bytes.size(), MSG_DONTWAIT) > 0;
    }
    while (auto* event = xcb_poll_for_event(server_.get())) std::free(event);
    return xcb_connection_has_error(server_.get()) == 0;
  }

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* server) const { xcb_disconnect(server); }
  };

  int compositor_;
  std::unique_ptr<xcb_connection_t, Disconnect> server_;
};

LinuxSessionWatch::LinuxSessionWatch(Executor& main) : main_(main), display_(std::make_unique<Display>()) {}

void LinuxSessionWatch::onEnded(std::function<void()> callback) {
  if (display_->descriptor() < 0 || thread_.joinable()) return;
  wake_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  thread_ = std::thread([this, callback = std::move(callback)] {
    std::array<pollfd, 2> watched{{{display_->descriptor(), POLLIN, 0}, {wake_, POLLIN, 0}}};
    for (;;) {
      if (::poll(watched.data(), watched.size(), -1) < 0) continue;
      if (watched[1].revents != 0) return;
      if (!display_->read()) break;
    }
    main_.post(callback);
  });
}

LinuxSessionWatch::~LinuxSessionWatch() {
  if (!thread_.joinable()) return;
  const std::uint64_t one = 1;
  static_cast<void>(!::write(wake_, &one, sizeof one));
  thread_.join();
  ::close(wake_);
}

}  // namespace quillmere
