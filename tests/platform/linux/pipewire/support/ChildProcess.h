// A child that is ended with the object, and the signal player in particular.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace quillmere::test {

class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& command);
  ~ChildProcess();
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  /// A line to its standard input.
  void say(const std::string& line) const;
  /// Sends SIGKILL and waits.
  void kill();

 private:
  pid_t pid_ = 0;
  int input_ = -1;
};

/// Starts the signal player with these arguments.
ChildProcess playSignal(std::vector<std::string> arguments);

}  // namespace quillmere::test
