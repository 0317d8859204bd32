// Starting, and the end.
#include "platform/linux/LinuxWindowsLauncher.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "process/SocketChannel.h"

namespace quillmere {

namespace {

constexpr const char* programName = "quillmere-windows";
/// Beside the standard three.
constexpr int inheritedDescriptor = 3;
/// A process that has lost its line ends by itself; one that doesn't in this time is ended.
constexpr int patienceMillis = 3000;

/// Waits for the end of a child, and brings it about if need be.
int waitForEnd(pid_t pid) {
  const auto descriptor = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
  pollfd watched{descriptor, POLLIN, 0};
  int ready = 0;
  while (descriptor >= 0 && (ready = ::poll(&watched, 1, patienceMillis)) < 0 && errno == EINTR) {
  }
  if (descriptor >= 0) ::close(descriptor);
  if (ready == 0) ::kill(pid, SIGKILL);
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

std::string describe(int status) {
  if (WIFSIGNALED(status)) return "the windows were ended by signal " + std::to_string(WTERMSIG(status));
  return "the windows ended with code " + std::to_string(WEXITSTATUS(status));
}

/// The line to a child, and the child itself.
class ChildChannel final : public Channel {
 public:
  ChildChannel(int socket, pid_t pid, ChannelEvents events, const Logger& log)
      : pid_(pid),
        line_(std::make_unique<SocketChannel>(
            socket, ChannelEvents{std::move(events.received), [this, log, closed = std::move(events.closed)] {
                                    const int status = waitForEnd(std::exchange(pid_, 0));
                                    // Nobody has asked it to.
                                    log.error(describe(status));
                                    closed();
                                  }})) {}
  ~ChildChannel() override {
    line_.reset();
    if (pid_ != 0) waitForEnd(pid_);
  }
  ChildChannel(const ChildChannel&) = delete;
  ChildChannel& operator=(const ChildChannel&) = delete;

  void send(const std::string& message) override { line_->send(message); }

 private:
  /// The line's thread alone touches it until that has ended.
  pid_t pid_;
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
  if (program_ >= 0) ::close(program_);
}

std::unique_ptr<Channel> LinuxWindowsLauncher::launch(ChannelEvents events) {
  std::array<int, 2> ends{-1, -1};
  if (program_ < 0 || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    log_.error(std::string("the windows can't be started: ") + std::strerror(program_ < 0 ? ENOENT : errno));
    return nullptr;
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
    return nullptr;
  }
  return std::make_unique<ChildChannel>(ends[0], pid, std::move(events), log_);
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
