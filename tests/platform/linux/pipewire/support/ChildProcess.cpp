#include "support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace quillmere::test {

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
  std::array<int, 2> channel{};
  if (pipe2(channel.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(channel[0], STDIN_FILENO);
    std::vector<char*> arguments;
    for (const auto& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  close(channel[0]);
  input_ = channel[1];
}

ChildProcess::~ChildProcess() { kill(); }

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(std::exchange(other.pid_, 0)), input_(std::exchange(other.input_, -1)) {}

void ChildProcess::say(const std::string& line) const {
  const auto text = line + "\n";
  if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::runtime_error("the child does not listen");
  }
}

void ChildProcess::kill() {
  if (pid_ > 0) {
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
  }
  if (input_ >= 0) close(std::exchange(input_, -1));
}

ChildProcess playSignal(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), QUILLMERE_SIGNAL_PLAYER);
  return ChildProcess(arguments);
}

}  // namespace quillmere::test
