// The system's log: `log stream --predicate 'subsystem == "app.quillmere.host"' --level info` shows it.
// [any but audio]
#pragma once

#include <memory>

#include "runtime/Logger.h"

namespace quillmere {

class UnifiedLogSink final : public LogSink {
 public:
  UnifiedLogSink();
  ~UnifiedLogSink() override;
  UnifiedLogSink(const UnifiedLogSink&) = delete;
  UnifiedLogSink& operator=(const UnifiedLogSink&) = delete;

  void write(LogLevel level, std::string_view subsystem, std::string_view category, std::string_view message) override;

 private:
  class Logs;
  std::unique_ptr<Logs> logs_;
};

}  // namespace quillmere
