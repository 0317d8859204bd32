// The cache that is read, and the thread that commits while there is something to commit.
#include "platform/linux/SqliteUserDefaults.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string>
#include <utility>

#include "runtime/EventualThread.h"
#include "sqlite/SettingsDatabase.h"

namespace quillmere {

namespace {

/// After a burst of writes, how long it stays quiet before what was committed is moved out of reach of a power loss.
constexpr auto quietBeforeSettling = std::chrono::seconds(1);
constexpr auto firstRetry = std::chrono::milliseconds(100);
constexpr auto longestRetry = std::chrono::seconds(30);

}  // namespace

class SqliteUserDefaults::Writer {
 public:
  Writer(std::filesystem::path file, const Clocks& clocks, LogSink& log)
      : database_(std::move(file), clocks, log),
        log_(log, "SqliteUserDefaults"),
        thread_(mutex_, "settings-writer", [this] {
          std::unique_lock lock(mutex_);
          writeAll(lock);
          thread_.ended();
        }) {
    auto opened = database_.open();
    values_ = std::move(opened.values);
    isWritable_ = opened.storage != SettingsDatabase::Storage::none;
    mustRewrite_ = opened.storage == SettingsDatabase::Storage::owed;
    const std::lock_guard lock(mutex_);
    if (mustRewrite_) thread_.ensure();
  }

  ~Writer() {
    {
      const std::lock_guard lock(mutex_);
      closing_ = true;
    }
    changed_.notify_all();
    thread_.finish();
  }

  std::optional<DefaultsValue> object(std::string_view key) const {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(key);
    if (found == values_.end()) return std::nullopt;
    return found->second;
  }

  void change(std::string_view key, std::optional<DefaultsValue> value) {
    {
      const std::lock_guard lock(mutex_);
      if (isWritable_) {
        pending_.insert_or_assign(std::string(key), value);
        thread_.ensure();
      }
      if (value) {
        values_.insert_or_assign(std::string(key), std::move(*value));
      } else if (const auto found = values_.find(key); found != values_.end()) {
        values_.erase(found);
      }
    }
    changed_.notify_one();
  }

  bool flush() {
    if (!isWritable_) return false;
    std::unique_lock lock(mutex_);
    const auto failuresBefore = failures_;
    committed_.wait(lock, [&] { return isIdle() || failures_ != failuresBefore; });
    return isIdle();
  }

 private:
  using Outcome = SettingsDatabase::Outcome;

  [[nodiscard]] bool isIdle() const { return pending_.empty() && !mustRewrite_ && !writing_; }

  void writeAll(std::unique_lock<std::mutex>& lock) {
    const auto hasWork = [this] { return closing_ || !pending_.empty() || mustRewrite_; };
    std::chrono::milliseconds retry = firstRetry;
    while (true) {
      if (isUnsettled_ && !changed_.wait_for(lock, quietBeforeSettling, hasWork)) {
        lock.unlock();
        database_.settle();
        lock.lock();
        isUnsettled_ = false;
      }
      if (isIdle()) return;
      if (writeOnce(lock)) {
        retry = firstRetry;
        isUnsettled_ = true;
        committed_.notify_all();
        continue;
      }
      const bool isLost = closing_;
      // A log may be slow, and the main thread wants the lock with every read.
      lock.unlock();
      if (isLost) {
        log_.error("the last changes of the settings are lost: " + database_.lastError());
      } else if (retry == firstRetry) {
        log_.error("settings can't be stored now, trying again: " + database_.lastError());
      }
      lock.lock();
      // Whoever waits learns of the failure once it is in the log.
      ++failures_;
      committed_.notify_all();
      if (isLost) return;
      changed_.wait_for(lock, retry, [this] { return closing_; });
      retry = std::min<std::chrono::milliseconds>(retry * 2, longestRetry);
    }
  }

  /// Commits what there is; the lock is free meanwhile. What failed is kept, unless it was overwritten since.
  bool writeOnce(std::unique_lock<std::mutex>& lock) {
    auto outcome = Outcome::startOver;
    writing_ = true;
    auto batch = std::exchange(pending_, {});
    if (!mustRewrite_) {
      lock.unlock();
      outcome = database_.write(batch);
      lock.lock();
    }
    if (outcome == Outcome::startOver) {
      // Everything is written anew, so the batch and what came in meanwhile are part of it.
      pending_.clear();
      batch.clear();
      const auto everything = values_;
      lock.unlock();
      outcome = database_.rewrite(everything);
      lock.lock();
      mustRewrite_ = outcome != Outcome::done;
    }
    pending_.merge(outcome == Outcome::done ? SettingsChanges{} : std::move(batch));
    writing_ = false;
    return outcome == Outcome::done;
  }

  // The thread's own while it runs.
  SettingsDatabase database_;
  Logger log_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::condition_variable committed_;
  SettingsValues values_;
  /// Fixed from the start.
  bool isWritable_ = false;
  SettingsChanges pending_;
  bool writing_ = false;
  bool mustRewrite_ = false;
  bool closing_ = false;
  bool isUnsettled_ = false;
  std::uint64_t failures_ = 0;
  /// What waits has one until it is settled.
  EventualThread thread_;
};

SqliteUserDefaults::SqliteUserDefaults(std::filesystem::path file, const Clocks& clocks, LogSink& log)
    : writer_(std::make_unique<Writer>(std::move(file), clocks, log)) {}

SqliteUserDefaults::~SqliteUserDefaults() = default;

std::filesystem::path SqliteUserDefaults::standardFile() {
  std::filesystem::path directory;
  const char* const configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && configured[0] == '/') {
    directory = configured;
  } else {
    const char* home = std::getenv("HOME");
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (home == nullptr || home[0] != '/') {
      getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
      home = found != nullptr ? found->pw_dir : nullptr;
    }
    if (home == nullptr || home[0] != '/') return {};
    directory = std::filesystem::path(home) / ".config";
  }
  return directory / "quillmere" / "defaults.sqlite";
}

std::optional<DefaultsValue> SqliteUserDefaults::object(std::string_view key) const { return writer_->object(key); }

void SqliteUserDefaults::set(std::string_view key, DefaultsValue value) { writer_->change(key, std::move(value)); }

void SqliteUserDefaults::remove(std::string_view key) { writer_->change(key, std::nullopt); }

bool SqliteUserDefaults::flush() { return writer_->flush(); }

}  // namespace quillmere
