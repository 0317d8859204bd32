// A child, a pipe and a clock, on the host's loop.
#include "platform/linux/LinuxReleaseFeed.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "loop/DescriptorWatch.h"
#include "loop/HostLoop.h"
#include "loop/HostTimer.h"
#include "process/Child.h"
#include "runtime/Threads.h"
#include "text/CleanText.h"

namespace quillmere {

namespace {

ReleaseFeed::Answer failed(std::string problem) { return {std::nullopt, std::move(problem)}; }

}  // namespace

/// One program on its way. [host] but for its end.
class LinuxReleaseFeed::Fetch {
 public:
  /// `done` is called once, when the program has ended or there was none, from within the constructor too.
  Fetch(HostLoop& loop, const LinuxReleaseFeedOptions& options, std::function<void(Answer)> done)
      : loop_(loop), options_(options), done_(std::move(done)) {
    if (const auto problem = start(); !problem.empty()) {
      done_(failed(problem));
      return;
    }
    watch_.emplace(loop_, output_, readable, [this](GIOCondition) { read(); });
    deadline_.emplace(loop_, [this] { giveUp("it takes too long"); });
    deadline_->set(options_.patience);
  }
  /// Nothing is read or looked for any more.
  void leave() {
    watch_.reset();
    deadline_.reset();
    glances_.reset();
  }
  /// Ends a program that still runs, and waits for that. [any but host]
  ~Fetch() {
    if (output_ >= 0) ::close(output_);
    // A program that is killed is gone in a moment, whatever it was at.
    if (child_) child_->waitForEnd(std::chrono::milliseconds::zero());
  }
  Fetch(const Fetch&) = delete;
  Fetch& operator=(const Fetch&) = delete;

 private:
  /// What went wrong; empty if nothing has.
  std::string start() {
    auto command = options_.command;
    if (command.empty()) return "there is no program for it";
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::strerror(errno);
    ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
    output_ = ends[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    std::vector<char*> arguments;
    for (auto& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t pid = 0;
    const int failure = ::posix_spawn(&pid, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (failure != 0) return std::strerror(failure);
    child_.emplace(pid);
    return {};
  }

  void read() {
    std::array<char, 4096> piece{};
    const auto count = ::read(output_, piece.data(), piece.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count < 0) {
      giveUp(std::strerror(errno));
    } else if (count == 0) {
      // It has nothing left to do: its end is waited for as long as its words were.
      watch_.reset();
      glances_.emplace(loop_, [this] { look(); });
      look();
    } else {
      text_.append(piece.data(), static_cast<std::size_t>(count));
      if (text_.size() > options_.maxBytes) giveUp("it is too long");
    }
  }

  void giveUp(std::string problem) {
    if (problem_) return;
    problem_ = std::move(problem);
    child_->kill();
    watch_.reset();
    if (!glances_) glances_.emplace(loop_, [this] { look(); });
    look();
  }

  void look() {
    const auto status = child_->collect();
    if (child_->isThere()) {
      glances_->set(childGlance);
      return;
    }
    deadline_->set(std::nullopt);
    done_(problem_ ? failed(*problem_) : answer(status.value_or(-1)));
  }

  [[nodiscard]] Answer answer(int status) const {
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return {text_, {}};
    if (WIFSIGNALED(status)) return failed("its program was ended by signal " + std::to_string(WTERMSIG(status)));
    // What went wrong is the last that it said.
    constexpr std::size_t maxProblemBytes = 200;
    auto words = cleanText(text_, maxProblemBytes);
    return failed(words.empty() ? "its program ended with code " + std::to_string(WEXITSTATUS(status)) : words);
  }

  HostLoop& loop_;
  const LinuxReleaseFeedOptions& options_;
  const std::function<void(Answer)> done_;
  int output_ = -1;
  std::optional<Child> child_;
  std::optional<DescriptorWatch> watch_;
  std::optional<HostTimer> deadline_;
  std::optional<HostTimer> glances_;
  std::string text_;
  std::optional<std::string> problem_;
};

LinuxReleaseFeed::LinuxReleaseFeed(Executor& main, LinuxReleaseFeedOptions options)
    : main_(main),
      options_(std::move(options)),
      self_(std::make_shared<LinuxReleaseFeed*>(this)),
      loop_(HostLoop::ofProcess()) {}

LinuxReleaseFeed::~LinuxReleaseFeed() {
  *self_ = nullptr;
  loop_->perform([this] {
    if (fetch_) fetch_->leave();
  });
}

void LinuxReleaseFeed::fetch(Reply reply) {
  QUILLMERE_CHECK_ON(main_, "the release feed is asked off the main thread");
  waiting_.push_back(std::move(reply));
  if (waiting_.size() > 1) return;
  loop_->post([this] {
    fetch_ = std::make_unique<Fetch>(*loop_, options_, [&main = main_, self = self_](const Answer& answer) {
      main.post([self, answer] {
        if (*self != nullptr) (*self)->finish(answer);
      });
    });
  });
}

void LinuxReleaseFeed::finish(const Answer& answer) {
  // Its program has ended: there is nothing to wait for.
  loop_->post([this] { fetch_.reset(); });
  for (const auto& reply : std::exchange(waiting_, {})) reply(answer);
}

}  // namespace quillmere
