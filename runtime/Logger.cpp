// Log lines on their way to a sink.
#include "runtime/Logger.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <utility>

namespace quillmere {

Logger::Logger(LogSink& sink, std::string category, std::string subsystem)
    : sink_(&sink), subsystem_(std::move(subsystem)), category_(std::move(category)) {}

void Logger::info(std::string_view message) const { sink_->write(LogLevel::info, subsystem_, category_, message); }

void Logger::standard(std::string_view message) const {
  sink_->write(LogLevel::standard, subsystem_, category_, message);
}

void Logger::error(std::string_view message) const { sink_->write(LogLevel::error, subsystem_, category_, message); }

std::string logText(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0U, '\0');
  if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

namespace {

const char* nameOf(LogLevel level) {
  if (level == LogLevel::info) return "info";
  return level == LogLevel::standard ? "default" : "error";
}

}  // namespace

void StandardErrorLogSink::write(LogLevel level, std::string_view /*subsystem*/, std::string_view category,
                                 std::string_view message) {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::array<char, 32> stamp{};
  std::strftime(stamp.data(), stamp.size(), "%Y-%m-%dT%H:%M:%SZ", &utc);
  std::fprintf(stderr, "%s %s [%.*s] %.*s\n", stamp.data(), nameOf(level), static_cast<int>(category.size()),
               category.data(), static_cast<int>(message.size()), message.data());
}

}  // namespace quillmere
