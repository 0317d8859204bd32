// The settings database of a Linux user: one SQLite file, private to the user, safe against a kill at any moment.
// Reads come from memory; writes return at once and are committed by a thread of their own, which goes with
// the last.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/UserDefaults.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {

/// A write is committed as soon as the one before it is, within a few milliseconds; writes that come faster than the
/// disk takes them are joined, key by key, so that the last one counts. Each commit is whole: a kill leaves every key
/// with its old or its new value. A commit survives the end of the process at once, and a loss of power from about a
/// second after the last write of a burst.
///
/// A file that is no database, or a damaged one, is moved aside and a fresh one is begun with what could still be read
/// of it; if that can't be stored at once, it is tried again like any other write. Where nothing can be written,
/// settings last as long as the object. All of it is logged, nothing fails towards the caller.
///
/// [main] unless told otherwise.
class SqliteUserDefaults final : public UserDefaults {
 public:
  /// Reads everything there is. The file's directory is made if need be and closed to others (0700), as the file is
  /// (0600). `clocks` and `log` must outlive the object. [main]
  SqliteUserDefaults(std::filesystem::path file, const Clocks& clocks, LogSink& log);
  /// Commits what is still to be written. [main]
  ~SqliteUserDefaults() override;
  SqliteUserDefaults(const SqliteUserDefaults&) = delete;
  SqliteUserDefaults& operator=(const SqliteUserDefaults&) = delete;

  /// "quillmere/defaults.sqlite" below $XDG_CONFIG_HOME, or below ~/.config where that is not set to an absolute path.
  /// [any]
  [[nodiscard]] static std::filesystem::path standardFile();

  [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override;
  void set(std::string_view key, DefaultsValue value) override;
  void remove(std::string_view key) override;

  /// Waits until everything written so far is committed; false if that failed, or if nothing can be stored. It is then
  /// tried again later. [any]
  bool flush();

 private:
  class Writer;
  std::unique_ptr<Writer> writer_;
};

}  // namespace quillmere
