// Ends the program in order when the session asks it to.
#include "shell/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace quillmere {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

/// A signal handler may do no more than write a byte.
volatile std::sig_atomic_t writeEnd = -1;

void handle(int /*signal*/) {
  const char byte = 1;
  static_cast<void>(!write(writeEnd, &byte, 1));
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> requested) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  readEnd_ = ends[0];
  writeEnd = ends[1];
  notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this, requested = std::move(requested)] {
                     char byte = 0;
                     while (read(readEnd_, &byte, 1) > 0) {
                     }
                     requested();
                   });
  for (const int signal : handledSignals) std::signal(signal, handle);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : handledSignals) std::signal(signal, SIG_DFL);
  if (readEnd_ < 0) return;
  notifier_.reset();
  close(readEnd_);
  close(writeEnd);
  writeEnd = -1;
}

}  // namespace quillmere
