// Ends the program in order when the session asks it to.
#include "shell/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace quillmere {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

constexpr char requesting = 'r';
constexpr char ending = 'e';

/// A signal handler may do no more than write a byte.
volatile std::sig_atomic_t writeEnd = -1;

void handle(int /*signal*/) {
  const int before = errno;
  static_cast<void>(!::write(writeEnd, &requesting, 1));
  errno = before;
}

}  // namespace

TerminationSignals::TerminationSignals(Executor& main, std::function<void()> requested) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return;
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
  readEnd_ = ends[0];
  writeEnd = ends[1];
  thread_ = std::thread([&main, requested = std::move(requested), from = readEnd_] {
    char byte = 0;
    for (;;) {
      const auto count = ::read(from, &byte, 1);
      if (count < 0 && errno == EINTR) continue;
      if (count != 1 || byte == ending) return;
      main.post(requested);
    }
  });
  for (const int signal : handledSignals) std::signal(signal, handle);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : handledSignals) std::signal(signal, SIG_DFL);
  if (readEnd_ < 0) return;
  static_cast<void>(!::write(writeEnd, &ending, 1));
  thread_.join();
  ::close(readEnd_);
  ::close(writeEnd);
  writeEnd = -1;
}

}  // namespace quillmere
