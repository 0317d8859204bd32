// The settings file itself: opening it whatever its state, reading it whole, writing one batch at a time.
// [any], one thread at a time: opened on [main], written from then on by a thread that has nothing else to do.
#pragma once

#include <sqlite3.h>
#include <sys/types.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/UserDefaults.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

namespace quillmere {

using SettingsValues = std::map<std::string, DefaultsValue, std::less<>>;
/// An absent value is a removal.
using SettingsChanges = std::map<std::string, std::optional<DefaultsValue>, std::less<>>;

class SettingsDatabase {
 public:
  enum class Outcome {
    done,
    /// Something outside stands in the way: another process, a full disk.
    tryLater,
    /// The file is damaged or gone: only rewrite() helps.
    startOver,
  };

  enum class Storage {
    /// The file holds the values and takes changes.
    ready,
    /// The values came from a damaged file and are not in the fresh one yet: rewrite() is due.
    owed,
    /// Nothing can be stored; settings last as long as the process.
    none,
  };
  struct Opened {
    SettingsValues values;
    Storage storage = Storage::ready;
  };

  SettingsDatabase(std::filesystem::path file, const Clocks& clocks, LogSink& log);

  /// Reads everything; call once, first. What can't be read is logged and moved aside.
  Opened open();
  /// One transaction: all of it or nothing. A single value that the database refuses is logged and left out.
  Outcome write(const SettingsChanges& changes);
  /// Begins a fresh file where that is needed, moving a damaged one aside, and writes `values` into it. To be repeated
  /// until it is done.
  Outcome rewrite(const SettingsValues& values);
  /// Moves what was committed to where a loss of power doesn't reach it.
  void settle();
  /// What went wrong last, for a log line.
  [[nodiscard]] const std::string& lastError() const { return lastError_; }

 private:
  struct Closer {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Closer>;
  using Connection = std::unique_ptr<sqlite3, Closer>;
  enum class State { usable, damaged, blocked };
  struct Reading {
    State state = State::usable;
    SettingsValues values;
    /// Every row was read.
    bool complete = false;
  };

  Reading openWritable();
  SettingsValues openReadOnly();
  [[nodiscard]] bool isOpen() const { return database_ != nullptr; }
  Reading readAll(sqlite3* database);
  std::optional<DefaultsValue> readValue(sqlite3_stmt* row);
  bool execute(sqlite3* database, const char* sql);
  bool prepareWrites();
  int writeRow(std::string_view key, const std::optional<DefaultsValue>& value);
  State prepareFile();
  bool reopen();
  bool moveAside(const std::string& reason);
  void close();
  void keepInMemory(const std::string& reason);
  [[nodiscard]] bool isFileInPlace() const;
  State noteError(sqlite3* database);

  std::filesystem::path file_;
  const Clocks& clocks_;
  Logger log_;
  std::string lastError_;
  dev_t device_ = 0;
  ino_t inode_ = 0;
  bool isDamaged_ = false;
  Connection database_;
  // Declared after the connection: statements go first.
  Statement begin_;
  Statement commit_;
  Statement rollback_;
  Statement replace_;
  Statement remove_;
};

}  // namespace quillmere
