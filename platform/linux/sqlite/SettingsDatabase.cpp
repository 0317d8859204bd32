// SQLite in WAL mode. A commit is one append to the log file, without waiting for the disk.
#include "sqlite/SettingsDatabase.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>
#include <utility>
#include <variant>

#include "sqlite/DirectoryLock.h"

namespace quillmere {

namespace {

constexpr int startBusyMillis = 500;
constexpr int writeBusyMillis = 2000;

// STRICT with ANY keeps every value in the very storage class in which it was bound.
constexpr const char* schema =
    "CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY NOT NULL, type TEXT NOT NULL, value ANY) "
    "STRICT, WITHOUT ROWID";

// What SQLite keeps beside the file, and the file. When they are moved the logs go first: a process that ends in
// between must not leave a log beside a database that it doesn't belong to.
constexpr const char* companions[] = {"-wal", "-journal", "-shm", ""};

constexpr const char* boolType = "bool";
constexpr const char* doubleType = "double";
constexpr const char* stringType = "string";
constexpr const char* dataType = "data";

/// Stored keys may be anything; a log line is one line of moderate length.
std::string printable(std::string_view text) {
  std::string result(text.substr(0, 120));
  for (auto& character : result) {
    if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) character = '?';
  }
  return result;
}

std::string columnText(sqlite3_stmt* row, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

std::string timeStamp(Date date) {
  const auto seconds = static_cast<std::time_t>(date.secondsSinceReference + Date::referenceUnixSeconds);
  std::tm utc{};
  gmtime_r(&seconds, &utc);
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &utc);
  return text;
}

std::filesystem::path withSuffix(const std::filesystem::path& file, std::string_view suffix) {
  auto result = file;
  result += suffix;
  return result;
}

/// mkdir with parents; those that are missing become private.
bool makeDirectories(const std::filesystem::path& directory) {
  std::filesystem::path made;
  for (const auto& part : directory) {
    made /= part;
    if (::mkdir(made.c_str(), 0700) == 0 || errno == EEXIST) continue;
    struct stat status{};
    // A read-only or foreign parent that exists is no obstacle.
    if (::stat(made.c_str(), &status) != 0) return false;
  }
  struct stat status{};
  if (::stat(directory.c_str(), &status) != 0) return false;
  if (!S_ISDIR(status.st_mode)) {
    errno = ENOTDIR;
    return false;
  }
  return true;
}

bool isThere(const std::filesystem::path& file) {
  struct stat status{};
  return ::lstat(file.c_str(), &status) == 0;
}

/// Type and value of a row. The value outlives the step, so nothing is copied.
int bindValue(sqlite3_stmt* statement, const DefaultsValue& value) {
  const char* type = dataType;
  int result = SQLITE_OK;
  if (const auto* const flag = std::get_if<bool>(&value)) {
    type = boolType;
    result = sqlite3_bind_int(statement, 3, *flag ? 1 : 0);
  } else if (const auto* const number = std::get_if<double>(&value)) {
    type = doubleType;
    result = sqlite3_bind_double(statement, 3, *number);
  } else if (const auto* const text = std::get_if<std::string>(&value)) {
    type = stringType;
    result = sqlite3_bind_text64(statement, 3, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
  } else if (const auto* const data = std::get_if<Data>(&value)) {
    // A null pointer would store NULL instead of no bytes.
    const void* const bytes = data->empty() ? static_cast<const void*>("") : data->data();
    result = sqlite3_bind_blob64(statement, 3, bytes, data->size(), SQLITE_STATIC);
  }
  return result == SQLITE_OK ? sqlite3_bind_text(statement, 2, type, -1, SQLITE_STATIC) : result;
}

void keepLogAtClose(sqlite3* database, bool keep) {
  int flag = keep ? 1 : 0;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_PERSIST_WAL, &flag);
  sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, flag, nullptr);
}

std::string uriOf(const std::filesystem::path& file, std::string_view query) {
  std::string uri = "file:";
  for (const char character : file.string()) {
    if (character == '?' || character == '#' || character == '%') {
      char escaped[4];
      std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned char>(character));
      uri += escaped;
    } else {
      uri += character;
    }
  }
  return uri.append(query);
}

}  // namespace

SettingsDatabase::SettingsDatabase(std::filesystem::path file, const Clocks& clocks, LogSink& log)
    : file_(std::move(file)), clocks_(clocks), log_(log, "SqliteUserDefaults") {}

SettingsDatabase::Opened SettingsDatabase::open() {
  if (file_.empty() || !makeDirectories(file_.parent_path())) {
    keepInMemory(file_.empty() ? "there is no home directory" : std::strerror(errno));
    return {{}, Storage::none};
  }
  const DirectoryLock lock(file_.parent_path());
  auto first = openWritable();
  if (first.state == State::usable) return {std::move(first.values), Storage::ready};
  close();
  if (first.state == State::blocked) {
    const auto reason = lastError_;
    auto values = openReadOnly();
    keepInMemory(reason);
    return {std::move(values), Storage::none};
  }

  SettingsValues saved;
  if (first.complete) saved = std::move(first.values);
  if (!moveAside(lastError_)) {
    keepInMemory(lastError_);
    return {std::move(saved), Storage::none};
  }
  // What is begun afresh can't be damaged again, unless by somebody who does it all the time.
  const auto second = openWritable();
  if (second.state == State::damaged) {
    close();
    moveAside(lastError_);
    keepInMemory(lastError_);
    return {std::move(saved), Storage::none};
  }
  if (second.state == State::usable && write(SettingsChanges(saved.begin(), saved.end())) == Outcome::done) {
    return {std::move(saved), Storage::ready};
  }
  // There was room to move the old file, so what stands in the way may go: a full disk, another process.
  if (second.state != State::usable) close();
  log_.error("what was saved can't be stored again now: " + lastError_);
  return {std::move(saved), Storage::owed};
}

SettingsDatabase::Reading SettingsDatabase::openWritable() {
  if (const auto state = prepareFile(); state != State::usable) return {state, {}, false};
  sqlite3* opened = nullptr;
  // Threads take turns with the connection, so it needs no lock of its own.
  const int result = sqlite3_open_v2(file_.c_str(), &opened,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  database_.reset(opened);
  if (result != SQLITE_OK) return {noteError(opened), {}, false};
  sqlite3_busy_timeout(opened, startBusyMillis);
  // Until the file has proved good its log is only looked at: closing would work it into the damaged file and delete
  // it.
  keepLogAtClose(opened, true);
  // The file may be anybody's work: its triggers and views get no powers.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  if (sqlite3_db_readonly(opened, "main") == 1) {
    lastError_ = "the file is read-only";
    return {State::blocked, {}, false};
  }
  const bool isSetUp = execute(opened, "PRAGMA synchronous=NORMAL") && execute(opened, "PRAGMA journal_mode=WAL") &&
                       execute(opened, "PRAGMA journal_size_limit=1048576") && execute(opened, schema);
  // What the header forbids may still be read, and is damage as below.
  if (!isSetUp && sqlite3_db_readonly(opened, "main") != 1) return {noteError(opened), {}, false};
  auto reading = readAll(opened);
  if (reading.state != State::usable) return reading;
  // Only now is its header known, which may forbid what the file system allows.
  if (sqlite3_db_readonly(opened, "main") == 1) {
    lastError_ = "its header says that it must not be written";
    reading.state = State::damaged;
    return reading;
  }
  if (!prepareWrites()) {
    reading.state = noteError(opened);
    return reading;
  }
  sqlite3_busy_timeout(opened, writeBusyMillis);
  keepLogAtClose(opened, false);
  struct stat status{};
  if (::stat(file_.c_str(), &status) == 0) {
    device_ = status.st_dev;
    inode_ = status.st_ino;
  }
  return reading;
}

/// Makes an empty file where there is none, and closes file and directory to others before anything is in them.
SettingsDatabase::State SettingsDatabase::prepareFile() {
  struct stat status{};
  const auto directory = file_.parent_path();
  if (::stat(directory.c_str(), &status) == 0 && (status.st_mode & 0077U) != 0) ::chmod(directory.c_str(), 0700);

  if (!isThere(file_)) {
    // A log without its database would be discarded, with all that is in it.
    if (isThere(withSuffix(file_, "-wal"))) {
      lastError_ = "there is a log, but no database";
      return State::damaged;
    }
    const int descriptor = ::open(file_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0) {
      lastError_ = std::strerror(errno);
      return State::blocked;
    }
    ::fchmod(descriptor, 0600);
    ::close(descriptor);
    return State::usable;
  }
  if (::stat(file_.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    lastError_ = "it is no regular file";
    return State::damaged;
  }
  // No descriptor of ours: closing one would drop the locks that this process may hold on the file.
  for (const auto* const suffix : companions) {
    const auto path = withSuffix(file_, suffix);
    if (::stat(path.c_str(), &status) == 0 && (status.st_mode & 0777U) != 0600) ::chmod(path.c_str(), 0600);
  }
  return State::usable;
}

SettingsDatabase::Reading SettingsDatabase::readAll(sqlite3* database) {
  Reading reading;
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database, "SELECT key, type, value FROM defaults", -1, &prepared, nullptr);
  const Statement rows(prepared);
  if (result != SQLITE_OK) {
    reading.state = noteError(database);
    return reading;
  }
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(rows.get())) == SQLITE_ROW) {
    if (auto value = readValue(rows.get()))
      reading.values.insert_or_assign(columnText(rows.get(), 0), std::move(*value));
  }
  if (step != SQLITE_DONE) {
    reading.state = noteError(database);
    return reading;
  }
  reading.complete = true;

  // Damage that the rows happened to miss would strike later, at a write.
  if (sqlite3_prepare_v2(database, "PRAGMA quick_check(1)", -1, &prepared, nullptr) != SQLITE_OK) {
    reading.state = noteError(database);
    return reading;
  }
  const Statement check(prepared);
  if (sqlite3_step(check.get()) != SQLITE_ROW) {
    reading.state = noteError(database);
  } else if (const auto verdict = columnText(check.get(), 0); verdict != "ok") {
    lastError_ = printable(verdict);
    reading.state = State::damaged;
  }
  return reading;
}

/// A row that is not what we write is left alone and counts as absent.
std::optional<DefaultsValue> SettingsDatabase::readValue(sqlite3_stmt* row) {
  const auto type = columnText(row, 1);
  const int stored = sqlite3_column_type(row, 2);
  if (type == boolType && stored == SQLITE_INTEGER) {
    const auto number = sqlite3_column_int64(row, 2);
    if (number == 0 || number == 1) return number == 1;
  } else if (type == doubleType && stored == SQLITE_FLOAT) {
    return sqlite3_column_double(row, 2);
  } else if (type == doubleType && stored == SQLITE_NULL) {
    // SQLite has no NaN and stores NULL for it.
    return std::numeric_limits<double>::quiet_NaN();
  } else if (type == stringType && stored == SQLITE_TEXT) {
    return columnText(row, 2);
  } else if (type == dataType && stored == SQLITE_BLOB) {
    const auto* const bytes = static_cast<const std::byte*>(sqlite3_column_blob(row, 2));
    return Data(bytes, bytes + sqlite3_column_bytes(row, 2));
  }
  log_.error("stored " + printable(columnText(row, 0)) + " ignored: its value does not fit the type \"" +
             printable(type) + "\"");
  return std::nullopt;
}

SettingsValues SettingsDatabase::openReadOnly() {
  // The first needs a place for its shared memory; the second, in a read-only directory, sees no log.
  for (const auto* const query : {"?mode=ro", "?mode=ro&immutable=1"}) {
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(uriOf(file_, query).c_str(), &opened,
                        SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    const Connection database(opened);
    if (result != SQLITE_OK) continue;
    sqlite3_busy_timeout(opened, startBusyMillis);
    auto reading = readAll(opened);
    if (reading.complete) return std::move(reading.values);
  }
  return {};
}

bool SettingsDatabase::execute(sqlite3* database, const char* sql) {
  return sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SettingsDatabase::prepareWrites() {
  const auto prepare = [this](Statement& statement, const char* sql) {
    sqlite3_stmt* prepared = nullptr;
    const int result = sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    statement.reset(prepared);
    return result == SQLITE_OK;
  };
  return prepare(begin_, "BEGIN IMMEDIATE") && prepare(commit_, "COMMIT") && prepare(rollback_, "ROLLBACK") &&
         prepare(replace_,
                 "INSERT INTO defaults (key, type, value) VALUES (?1, ?2, ?3) "
                 "ON CONFLICT (key) DO UPDATE SET type = excluded.type, value = excluded.value") &&
         prepare(remove_, "DELETE FROM defaults WHERE key = ?1");
}

SettingsDatabase::State SettingsDatabase::noteError(sqlite3* database) {
  const int code = database != nullptr ? sqlite3_errcode(database) : SQLITE_NOMEM;
  lastError_ = database != nullptr ? printable(sqlite3_errmsg(database)) : std::string("out of memory");
  switch (code & 0xFF) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
    case SQLITE_FORMAT:
    case SQLITE_SCHEMA:
    case SQLITE_MISMATCH:
    // Our own statements are right, so this is a table that isn't ours.
    case SQLITE_ERROR:
      return State::damaged;
    default:
      return State::blocked;
  }
}

SettingsDatabase::Outcome SettingsDatabase::write(const SettingsChanges& changes) {
  if (!isFileInPlace()) {
    lastError_ = "the file is gone";
    return Outcome::startOver;
  }
  const auto step = [](const Statement& statement) {
    const int result = sqlite3_step(statement.get());
    sqlite3_reset(statement.get());
    return result;
  };
  const auto failed = [&] {
    const auto state = noteError(database_.get());
    if (sqlite3_get_autocommit(database_.get()) == 0) step(rollback_);
    isDamaged_ = state == State::damaged;
    if (isDamaged_) keepLogAtClose(database_.get(), true);
    return isDamaged_ ? Outcome::startOver : Outcome::tryLater;
  };
  if (step(begin_) != SQLITE_DONE) return failed();
  for (const auto& [key, value] : changes) {
    const int result = writeRow(key, value);
    if (result == SQLITE_DONE) continue;
    const int kind = result & 0xFF;
    if (kind != SQLITE_TOOBIG && kind != SQLITE_CONSTRAINT) return failed();
    log_.error(printable(key) + " not stored: " + printable(sqlite3_errmsg(database_.get())));
  }
  if (step(commit_) != SQLITE_DONE) return failed();
  return Outcome::done;
}

int SettingsDatabase::writeRow(std::string_view key, const std::optional<DefaultsValue>& value) {
  auto* const statement = value ? replace_.get() : remove_.get();
  int result = sqlite3_bind_text64(statement, 1, key.data(), key.size(), SQLITE_STATIC, SQLITE_UTF8);
  if (result == SQLITE_OK && value) result = bindValue(statement, *value);
  if (result == SQLITE_OK) result = sqlite3_step(statement);
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  return result;
}

SettingsDatabase::Outcome SettingsDatabase::rewrite(const SettingsValues& values) {
  if ((isDamaged_ || !isOpen() || !isFileInPlace()) && !reopen()) return Outcome::startOver;
  return write(SettingsChanges(values.begin(), values.end()));
}

bool SettingsDatabase::reopen() {
  const bool wasOpen = isOpen();
  close();
  if (!makeDirectories(file_.parent_path())) {
    lastError_ = std::strerror(errno);
    return false;
  }
  const DirectoryLock lock(file_.parent_path());
  if (isDamaged_) {
    if (!moveAside(lastError_)) return false;
    isDamaged_ = false;
  } else if (wasOpen) {
    log_.error(file_.string() + " is gone; it is written anew");
  }
  auto state = openWritable().state;
  if (state == State::damaged) {
    close();
    if (!moveAside(lastError_)) return false;
    state = openWritable().state;
  }
  if (state != State::usable) close();
  return state == State::usable;
}

void SettingsDatabase::settle() {
  if (isOpen()) {
    sqlite3_wal_checkpoint_v2(database_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  }
}

bool SettingsDatabase::moveAside(const std::string& reason) {
  const auto base = withSuffix(file_, ".unreadable-" + timeStamp(clocks_.now()));
  auto aside = base;
  for (int number = 2; isThere(aside) || isThere(withSuffix(aside, "-wal")); ++number) {
    aside = withSuffix(base, "-" + std::to_string(number));
  }
  for (const auto* const suffix : companions) {
    if (::rename(withSuffix(file_, suffix).c_str(), withSuffix(aside, suffix).c_str()) == 0 || errno == ENOENT)
      continue;
    lastError_ = reason + "; it can't be moved aside: " + std::strerror(errno);
    return false;
  }
  log_.error(file_.string() + " is unreadable (" + reason + "); moved aside as " + aside.filename().string());
  return true;
}

void SettingsDatabase::close() {
  begin_.reset();
  commit_.reset();
  rollback_.reset();
  replace_.reset();
  remove_.reset();
  database_.reset();
}

void SettingsDatabase::keepInMemory(const std::string& reason) {
  close();
  log_.error("settings are kept in memory only, " + file_.string() + " can't be written: " + reason);
}

bool SettingsDatabase::isFileInPlace() const {
  struct stat status{};
  return ::stat(file_.c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_;
}

}  // namespace quillmere
