// Keeps every log line for a test to look at.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "runtime/Logger.h"

namespace quillmere::support {

class RecordingLogSink final : public LogSink {
 public:
  void write(LogLevel, std::string_view, std::string_view category, std::string_view message) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::string(category) + ": " + std::string(message));
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }
  [[nodiscard]] std::ptrdiff_t count(const std::string& text) const {
    const std::lock_guard lock(mutex_);
    return std::ranges::count_if(lines_, [&](const auto& line) { return line.find(text) != std::string::npos; });
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace quillmere::support
