// Looking for a child, and ending it.
#include "process/Child.h"

#include <sys/wait.h>

#include <csignal>
#include <thread>

namespace quillmere {

void Child::kill() {
  const std::scoped_lock lock(mutex_);
  if (pid_ != 0) ::kill(pid_, SIGKILL);
}

std::optional<int> Child::collect() {
  siginfo_t ended{};
  if (pid_ == 0) return std::nullopt;
  const bool isOurs = ::waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOWAIT | WNOHANG) == 0;
  if (isOurs && ended.si_pid == 0) return std::nullopt;
  // Once its status is taken its number may be another process's.
  const std::scoped_lock lock(mutex_);
  int status = 0;
  const bool isTaken = isOurs && ::waitpid(pid_, &status, WNOHANG) == pid_;
  pid_ = 0;
  return isTaken ? std::optional(status) : std::nullopt;
}

void Child::waitForEnd(std::chrono::milliseconds patience) {
  const auto limit = std::chrono::steady_clock::now() + patience;
  for (collect(); isThere(); collect()) {
    if (std::chrono::steady_clock::now() >= limit) kill();
    std::this_thread::sleep_for(childGlance);
  }
}

}  // namespace quillmere
