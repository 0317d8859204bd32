// A child, a pipe and a clock.
#include "platform/linux/LinuxReleaseFeed.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <utility>

#include "runtime/Threads.h"
#include "text/CleanText.h"

namespace quillmere {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// A program that writes to a pipe; ended and waited for when this goes.
class Child {
 public:
  explicit Child(std::vector<std::string> command) {
    std::array<int, 2> ends{-1, -1};
    if (command.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) {
      problem = command.empty() ? "there is no program for it" : std::strerror(errno);
      return;
    }
    output = ends[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    std::vector<char*> arguments;
    for (auto& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const int failure = ::posix_spawn(&pid, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (failure != 0) {
      pid = 0;
      problem = std::strerror(failure);
    }
  }
  ~Child() {
    end(SIGKILL);
    if (output >= 0) ::close(output);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Its status, once it has ended by itself or by the signal; 0 sends none.
  int end(int signal) {
    if (pid == 0) return status_;
    if (signal != 0) ::kill(pid, signal);
    while (::waitpid(pid, &status_, 0) < 0 && errno == EINTR) {
    }
    pid = 0;
    return status_;
  }

  pid_t pid = 0;
  int output = -1;
  std::string problem;

 private:
  int status_ = 0;
};

ReleaseFeed::Answer failed(std::string problem) { return {std::nullopt, std::move(problem)}; }

/// @param wake  readable as soon as nobody waits for the answer any more
ReleaseFeed::Answer run(const LinuxReleaseFeedOptions& options, int wake) {
  Child child(options.command);
  if (child.pid == 0) return failed(child.problem);
  const auto deadline = SteadyClock::now() + options.patience;
  std::string text;
  std::array<char, 4096> piece{};
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
    if (left <= 0) return failed("it takes too long");
    std::array<pollfd, 2> watched{pollfd{child.output, POLLIN, 0}, pollfd{wake, POLLIN, 0}};
    if (::poll(watched.data(), watched.size(), static_cast<int>(left)) < 0 && errno != EINTR) {
      return failed(std::strerror(errno));
    }
    if (watched[1].revents != 0) return failed("nobody waits for it");
    if (watched[0].revents == 0) continue;
    const auto count = ::read(child.output, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return failed(std::strerror(errno));
    if (count == 0) break;
    text.append(piece.data(), static_cast<std::size_t>(count));
    if (text.size() > options.maxBytes) return failed("it is too long");
  }
  // It has closed its output, and has nothing left to do.
  const int status = child.end(0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {std::move(text), {}};
  if (WIFSIGNALED(status)) return failed("its program was ended by signal " + std::to_string(WTERMSIG(status)));
  // What went wrong is the last that it said.
  constexpr std::size_t maxProblemBytes = 200;
  auto words = cleanText(text, maxProblemBytes);
  return failed(words.empty() ? "its program ended with code " + std::to_string(WEXITSTATUS(status)) : words);
}

}  // namespace

LinuxReleaseFeed::LinuxReleaseFeed(Executor& main, LinuxReleaseFeedOptions options)
    : main_(main), options_(std::move(options)), self_(std::make_shared<LinuxReleaseFeed*>(this)) {}

LinuxReleaseFeed::~LinuxReleaseFeed() {
  *self_ = nullptr;
  if (wake_ >= 0) {
    const std::uint64_t one = 1;
    static_cast<void>(::write(wake_, &one, sizeof one));
  }
  if (thread_.joinable()) thread_.join();
  if (wake_ >= 0) ::close(wake_);
}

void LinuxReleaseFeed::fetch(Reply reply) {
  QUILLMERE_CHECK_ON(main_, "the release feed is asked off the main thread");
  waiting_.push_back(std::move(reply));
  if (waiting_.size() > 1) return;
  if (wake_ < 0) wake_ = ::eventfd(0, EFD_CLOEXEC);
  // It has given its answer, which was the last thing it did.
  if (thread_.joinable()) thread_.join();
  thread_ = std::thread([options = options_, wake = wake_, &main = main_, self = self_] {
    const auto answer = run(options, wake);
    main.post([self, answer] {
      if (*self != nullptr) (*self)->finish(answer);
    });
  });
}

void LinuxReleaseFeed::finish(const Answer& answer) {
  for (const auto& reply : std::exchange(waiting_, {})) reply(answer);
}

}  // namespace quillmere
