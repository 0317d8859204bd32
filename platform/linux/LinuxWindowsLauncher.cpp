// Starting, and the end.
#include "platform/linux/LinuxWindowsLauncher.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "loop/HostLoop.h"
#include "loop/HostTimer.h"
#include "process/Child.h"
#include "process/SocketChannel.h"

namespace quillmere {

namespace {

constexpr const char* programName = "quillmere-windows";
/// Beside the standard three.
constexpr int inheritedDescriptor = 3;
/// A process that has lost its line ends by itself; one that doesn't in this time is ended.
constexpr auto patience = std::chrono::seconds(3);

std::string describe(int status) {
  if (WIFSIGNALED(status)) return "the windows were ended by signal " + std::to_string(WTERMSIG(status));
  return "the windows ended with code " + std::to_string(WEXITSTATUS(status));
}

/// The line to a child, and the child itself.
class ChildChannel final : public Channel {
 public:
  ChildChannel(int socket, pid_t pid, ChannelEvents events, const Logger& log)
      : loop_(HostLoop::ofProcess()),
        log_(log),
        closed_(std::move(events.closed)),
        child_(pid),
        line_(std::make_unique<SocketChannel>(
            socket,
            ChannelEvents{std::move(events.received), [this] { lineHasClosed(); }, std::move(events.drained)})) {}
  ~ChildChannel() override {
    line_.reset();
    loop_->perform([this] { glances_.reset(); });
    child_.waitForEnd(patience);
  }
  ChildChannel(const ChildChannel&) = delete;
  ChildChannel& operator=(const ChildChannel&) = delete;

  void send(const std::string& message) override { line_->send(message); }
  [[nodiscard]] std::size_t waitingBytes() const override { return line_->waitingBytes(); }
  void giveUp() override { child_.kill(); }

 private:
  /// Nobody has asked it to: its end is waited for, and brought about if need be. [host]
  void lineHasClosed() {
    limit_ = std::chrono::steady_clock::now() + patience;
    glances_.emplace(*loop_, [this] { look(); });
    look();
  }

  void look() {
    if (const auto status = child_.collect()) log_.error(describe(*status));
    if (!child_.isThere()) {
      closed_();
      return;
    }
    if (std::chrono::steady_clock::now() >= limit_) child_.kill();
    glances_->set(childGlance);
  }

  const std::shared_ptr<HostLoop> loop_;
  const Logger log_;
  const std::function<void()> closed_;
  Child child_;
  // The loop's own.
  std::optional<HostTimer> glances_;
  MonotonicTime limit_;
  /// Last, so that it begins when all is there.
  std::unique_ptr<SocketChannel> line_;
};

}  // namespace

LinuxWindowsLauncher::LinuxWindowsLauncher(const std::vector<std::string>& places, LogSink& log)
    : log_(log, "WindowsLauncher") {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (const auto& place : places) {
    const int file = ::open((folder / place).c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) continue;
    // Out of the way of the descriptor that the program is given.
    program_ = ::fcntl(file, F_DUPFD_CLOEXEC, inheritedDescriptor + 1);
    ::close(file);
    return;
  }
  log_.error(std::string("there is no program for the windows: ") + std::strerror(errno));
}

LinuxWindowsLauncher::~LinuxWindowsLauncher() {
  // A process that nobody has asked for anything ends as any other does: it loses its line.
  if (prepared_) static_cast<void>(launch({[](const std::string&) {}, [] {}}));
  if (program_ >= 0) ::close(program_);
}

void LinuxWindowsLauncher::prepare() {
  if (!prepared_) prepared_ = start();
}

std::unique_ptr<Channel> LinuxWindowsLauncher::launch(ChannelEvents events) {
  const auto started = prepared_ ? std::exchange(prepared_, std::nullopt) : start();
  if (!started) return nullptr;
  return std::make_unique<ChildChannel>(started->socket, started->pid, std::move(events), log_);
}

std::optional<LinuxWindowsLauncher::Started> LinuxWindowsLauncher::start() {
  std::array<int, 2> ends{-1, -1};
  if (program_ < 0 || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    log_.error(std::string("the windows can't be started: ") + std::strerror(program_ < 0 ? ENOENT : errno));
    return std::nullopt;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  // Onto itself it would stay closed on exec, but for this call's care: it then clears that flag.
  posix_spawn_file_actions_adddup2(&actions, ends[1], inheritedDescriptor);
  const auto path = "/proc/self/fd/" + std::to_string(program_);
  std::string name = programName;
  std::array<char*, 2> arguments{name.data(), nullptr};
  pid_t pid = 0;
  const int failure = ::posix_spawn(&pid, path.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(ends[1]);
  if (failure != 0) {
    ::close(ends[0]);
    log_.error(std::string("the windows can't be started: ") + std::strerror(failure));
    return std::nullopt;
  }
  return Started{ends[0], pid};
}

std::unique_ptr<Channel> openInheritedChannel(ChannelEvents events) {
  int type = 0;
  socklen_t size = sizeof type;
  const bool isSocket = ::getsockopt(inheritedDescriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0;
  if (!isSocket || type != SOCK_STREAM) return nullptr;
  ::fcntl(inheritedDescriptor, F_SETFD, FD_CLOEXEC);
  return std::make_unique<SocketChannel>(inheritedDescriptor, std::move(events));
}

}  // namespace quillmere
