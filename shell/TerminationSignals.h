// Ends the program in order when the session asks it to: SIGTERM, SIGINT, SIGHUP.
#pragma once

#include <functional>
#include <thread>

#include "runtime/Executor.h"

namespace quillmere {

/// One at a time in a process. [main]
class TerminationSignals {
 public:
  /// `requested` is called on `main` with each of the signals.
  TerminationSignals(Executor& main, std::function<void()> requested);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  int readEnd_ = -1;
  std::thread thread_;
};

}  // namespace quillmere
