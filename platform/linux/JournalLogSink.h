// Log lines to the system's journal where there is one, to standard error otherwise.
#pragma once

#include <string>

#include "platform/linux/RepeatedLines.h"
#include "runtime/Logger.h"

namespace quillmere {

/// [any but audio]
class JournalLogSink final : public LogSink {
 public:
  /// `socketPath` is where a journal listens.
  explicit JournalLogSink(const std::string& socketPath = "/run/systemd/journal/socket");
  /// A line that the journal does not take goes to standard error. One of the level info that says again what was said
  /// a moment ago goes nowhere: a program that runs for months would fill a disk with what its polls find. [any but
  /// audio]
  void write(LogLevel level, std::string_view subsystem, std::string_view category, std::string_view message) override;
  [[nodiscard]] bool writesToJournal() const { return writesToJournal_; }

 private:
  StandardErrorLogSink standardError_;
  RepeatedLines repeated_;
  bool writesToJournal_;
};

}  // namespace quillmere
