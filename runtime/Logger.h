// Log lines with subsystem, category and level; the host decides where they go.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

enum class LogLevel { info, standard, error };

class LogSink {
 public:
  virtual ~LogSink() = default;
  /// One line, without line feed. [any but audio]
  virtual void write(LogLevel level, std::string_view subsystem, std::string_view category,
                     std::string_view message) = 0;
};

/// A cheap copyable handle on a sink.
class Logger {
 public:
  Logger(LogSink& sink, std::string category, std::string subsystem = "app.quillmere.host");
  void info(std::string_view message) const;
  /// The system log's default level.
  void standard(std::string_view message) const;
  void error(std::string_view message) const;

 private:
  LogSink* sink_;
  std::string subsystem_;
  std::string category_;
};

/// printf-style text for a log line.
[[gnu::format(printf, 1, 2)]] std::string logText(const char* format, ...);

/// "2026-11-21T05:23:15Z error [Category] message" on standard error. [any but audio]
class StandardErrorLogSink final : public LogSink {
 public:
  void write(LogLevel level, std::string_view subsystem, std::string_view category, std::string_view message) override;
};

}  // namespace quillmere
