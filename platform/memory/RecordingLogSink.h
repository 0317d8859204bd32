// A log that remembers its lines, for tests of what is logged.
// Any thread may write.
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Logger.h"

namespace quillmere {

/// [any]
class RecordingLogSink final : public LogSink {
 public:
  struct Line {
    LogLevel level = LogLevel::info;
    std::string subsystem;
    std::string category;
    std::string message;

    friend bool operator==(const Line&, const Line&) = default;
  };

  void write(LogLevel level, std::string_view subsystem, std::string_view category, std::string_view message) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back({level, std::string(subsystem), std::string(category), std::string(message)});
  }

  /// All lines since the start or the last clear().
  [[nodiscard]] std::vector<Line> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }
  /// The message texts alone, in order.
  [[nodiscard]] std::vector<std::string> messages() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> texts;
    texts.reserve(lines_.size());
    for (const auto& line : lines_) texts.push_back(line.message);
    return texts;
  }
  /// How many lines have exactly this level and text.
  [[nodiscard]] int count(LogLevel level, std::string_view message) const {
    const std::lock_guard lock(mutex_);
    int found = 0;
    for (const auto& line : lines_) found += line.level == level && line.message == message ? 1 : 0;
    return found;
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Line> lines_;
};

}  // namespace quillmere
