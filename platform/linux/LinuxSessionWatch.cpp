// A connection that is never used, a Wayland compositor's socket or an X server's; and a pipe that signals write to.
#include "platform/linux/LinuxSessionWatch.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "loop/DescriptorWatch.h"
#include "loop/HostLoop.h"

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

/// The signals as bytes in a pipe. They are not turned off for threads and children, as a descriptor made for them
/// would want.
class LinuxSessionWatch::Signals {
 public:
  Signals() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = ends[0];
    writeEnd = ends[1];
    for (const int signal : handledSignals) std::signal(signal, handle);
  }
  ~Signals() {
    if (readEnd_ < 0) return;
    for (const int signal : handledSignals) std::signal(signal, SIG_DFL);
    ::close(std::exchange(writeEnd, -1));
    ::close(readEnd_);
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  /// -1 where they end the process at once.
  [[nodiscard]] int descriptor() const { return readEnd_; }
  void read() const {
    std::array<char, 16> bytes;
    while (::read(readEnd_, bytes.data(), bytes.size()) > 0) continue;
  }

 private:
  static constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};
  /// A signal handler may do no more than write a byte.
  static inline volatile std::sig_atomic_t writeEnd = -1;

  static void handle(int /*signal*/) {
    const int before = errno;
    static_cast<void>(!::write(writeEnd, "", 1));
    errno = before;
  }

  int readEnd_ = -1;
};

/// [host]
struct LinuxSessionWatch::Watches {
  std::optional<DescriptorWatch> display;
  std::optional<DescriptorWatch> signals;
};

LinuxSessionWatch::LinuxSessionWatch(Executor& main)
    : main_(main),
      loop_(HostLoop::ofProcess()),
      display_(std::make_unique<Display>()),
      watches_(std::make_unique<Watches>()) {}

void LinuxSessionWatch::onEnded(std::function<void()> callback) {
  if (display_->descriptor() < 0) return;
  loop_->perform([&] {
    watches_->display.emplace(*loop_, display_->descriptor(), readable,
                              [this, callback = std::move(callback)](GIOCondition) {
                                if (display_->read()) return;
                                watches_->display.reset();
                                main_.post(callback);
                              });
  });
}

void LinuxSessionWatch::onEndRequested(std::function<void()> callback) {
  signals_ = std::make_unique<Signals>();
  if (signals_->descriptor() < 0) return;
  loop_->perform([&] {
    watches_->signals.emplace(*loop_, signals_->descriptor(), readable,
                              [this, callback = std::move(callback)](GIOCondition) {
                                signals_->read();
                                main_.post(callback);
                              });
  });
}

LinuxSessionWatch::~LinuxSessionWatch() {
  loop_->perform([this] { watches_.reset(); });
}

}  // namespace quillmere
