// Ends the program in order when the session asks it to: SIGTERM, SIGINT and SIGHUP become a call on the main thread.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace quillmere {

/// One at a time. [main]
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> requested);
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

 private:
  int readEnd_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quillmere
