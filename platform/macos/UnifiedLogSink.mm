#include "platform/macos/UnifiedLogSink.h"

#import <Foundation/Foundation.h>
#import <os/log.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "foundation/Text.h"

namespace quillmere {

namespace {

constexpr os_log_type_t typeOf(LogLevel level) {
  switch (level) {
    case LogLevel::info:
      return OS_LOG_TYPE_INFO;
    case LogLevel::standard:
      return OS_LOG_TYPE_DEFAULT;
    case LogLevel::error:
      return OS_LOG_TYPE_ERROR;
  }
  return OS_LOG_TYPE_DEFAULT;
}
static_assert(typeOf(LogLevel::info) == 0x01);
static_assert(typeOf(LogLevel::standard) == 0x00);
static_assert(typeOf(LogLevel::error) == 0x10);

}  // namespace

/// One a subsystem and category, made with its first line and kept: the system never lets go of one.
class UnifiedLogSink::Logs {
 public:
  os_log_t _Nonnull log(std::string_view subsystem, std::string_view category) {
    const std::lock_guard lock(mutex_);
    std::pair<std::string, std::string> name(subsystem, category);
    auto found = made_.find(name);
    if (found == made_.end()) {
      const os_log_t made = os_log_create(name.first.c_str(), name.second.c_str());
      found = made_.emplace(std::move(name), made).first;
    }
    return found->second;
  }

 private:
  std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, os_log_t> made_;
};

UnifiedLogSink::UnifiedLogSink() : logs_(std::make_unique<Logs>()) {}

UnifiedLogSink::~UnifiedLogSink() = default;

void UnifiedLogSink::write(LogLevel level, std::string_view subsystem, std::string_view category,
                           std::string_view message) {
  // Threads of our own have no pool.
  @autoreleasepool {
    // What the login item's switch could not do goes where people look for what programs say of themselves.
    if (category == "LaunchAtLogin") {
      NSLog(@"%@", macos::nsString(message));
      return;
    }
    const std::string line(message);
    // What the lines name are identifiers of applications and devices; without this word the log would hide them.
    os_log_with_type(logs_->log(subsystem, category), typeOf(level), "%{public}s", line.c_str());
  }
}

}  // namespace quillmere
