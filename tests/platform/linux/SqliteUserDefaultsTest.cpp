// The settings file of a Linux user: its form, its privacy, and what kills, damage and other processes do to it.
#include "platform/linux/SqliteUserDefaults.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"
#include "tests/platform/contract/UserDefaultsContract.h"
#include "tests/platform/linux/support/TemporaryFolder.h"

namespace quillmere {
namespace {

namespace files = std::filesystem;
using support::TemporaryFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// 2001-01-01T00:00:00Z and 700,000,000 seconds.
constexpr const char* virtualStamp = "20230308T202640Z";

class SqliteHost {
 public:
  SqliteHost() { restart(); }
  UserDefaults& defaults() { return *defaults_; }
  void restart() {
    defaults_.reset();
    defaults_ = std::make_unique<SqliteUserDefaults>(folder_.path("quillmere/defaults.sqlite"), time_, log_);
  }

 private:
  TemporaryFolder folder_;
  VirtualTime time_;
  RecordingLogSink log_;
  std::unique_ptr<SqliteUserDefaults> defaults_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Sqlite, UserDefaultsContract, SqliteHost);

/// Another program's look at the file.
class RawDatabase {
 public:
  explicit RawDatabase(const std::string& file) {
    EXPECT_EQ(sqlite3_open(file.c_str(), &database_), SQLITE_OK);
    sqlite3_busy_timeout(database_, 5000);
  }
  ~RawDatabase() { sqlite3_close(database_); }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;

  void run(const std::string& sql) {
    ASSERT_EQ(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database_) << " in " << sql;
  }
  /// The first column of the first row as text; empty if there is none.
  std::string first(const std::string& sql) {
    const auto result = firstIfReadable(sql);
    EXPECT_TRUE(result) << sqlite3_errmsg(database_) << " in " << sql;
    return result.value_or("");
  }
  /// The same of a file that may be unfinished.
  std::optional<std::string> firstIfReadable(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) return std::nullopt;
    std::string result;
    if (sqlite3_step(statement) == SQLITE_ROW) {
      const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
      if (text != nullptr) result = text;
    }
    sqlite3_finalize(statement);
    return result;
  }

 private:
  sqlite3* database_ = nullptr;
};

std::string contentOf(const files::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

unsigned modeOf(const files::path& file) {
  struct stat status{};
  return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

/// Runs `work` in a process of its own, which ends with its result.
pid_t startChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

int exitCodeOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// What stands in the way has gone: everything is stored with one of the next tries.
bool storesInTime(SqliteUserDefaults& defaults) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < deadline) {
    if (defaults.flush()) return true;
    std::this_thread::yield();
  }
  return false;
}

class SqliteUserDefaultsTest : public testing::Test {
 protected:
  std::unique_ptr<SqliteUserDefaults> open() { return std::make_unique<SqliteUserDefaults>(file(), time, log); }
  /// One start of the program that stores something and ends.
  void store(const std::string& key, DefaultsValue value) { open()->set(key, std::move(value)); }

  [[nodiscard]] std::string directory() const { return folder.path("config/quillmere"); }
  [[nodiscard]] std::string file() const { return directory() + "/defaults.sqlite"; }
  void makeFile(const std::string& content) { folder.write("config/quillmere/defaults.sqlite", content); }
  /// Names in the directory, sorted.
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (const auto& entry : files::directory_iterator(directory())) result.push_back(entry.path().filename());
    std::sort(result.begin(), result.end());
    return result;
  }
  [[nodiscard]] std::string aside(const std::string& suffix = {}) const {
    return file() + ".unreadable-" + virtualStamp + suffix;
  }

  TemporaryFolder folder;
  VirtualTime time;
  RecordingLogSink log;
};

// The file. -----------------------------------------------------------------------------------------------------------

TEST(SqliteUserDefaultsPath, IsBelowTheConfigHomeOrTheHomeDirectory) {
  const auto withEnvironment = [](const char* config, const char* home) {
    config != nullptr ? ::setenv("XDG_CONFIG_HOME", config, 1) : ::unsetenv("XDG_CONFIG_HOME");
    home != nullptr ? ::setenv("HOME", home, 1) : ::unsetenv("HOME");
    return SqliteUserDefaults::standardFile().string();
  };
  const char* const config = std::getenv("XDG_CONFIG_HOME");
  const char* const home = std::getenv("HOME");
  const std::string configBefore = config != nullptr ? config : "";
  const std::string homeBefore = home != nullptr ? home : "";

  EXPECT_EQ(withEnvironment("/x/config", "/home/me"), "/x/config/quillmere/defaults.sqlite");
  EXPECT_EQ(withEnvironment(nullptr, "/home/me"), "/home/me/.config/quillmere/defaults.sqlite");
  EXPECT_EQ(withEnvironment("", "/home/me"), "/home/me/.config/quillmere/defaults.sqlite");
  // The base directory rules tell to ignore a relative one.
  EXPECT_EQ(withEnvironment("x/config", "/home/me"), "/home/me/.config/quillmere/defaults.sqlite");
  EXPECT_THAT(withEnvironment(nullptr, nullptr), testing::EndsWith("/.config/quillmere/defaults.sqlite"));

  config != nullptr ? ::setenv("XDG_CONFIG_HOME", configBefore.c_str(), 1) : ::unsetenv("XDG_CONFIG_HOME");
  home != nullptr ? ::setenv("HOME", homeBefore.c_str(), 1) : ::unsetenv("HOME");
}

TEST_F(SqliteUserDefaultsTest, TellsTheTypesApartInTheFile) {
  {
    const auto defaults = open();
    defaults->set("flag", true);
    defaults->set("number", 1.0);
    defaults->set("text", std::string("1"));
    defaults->set("data", Data{std::byte{'1'}});
  }
  RawDatabase raw(file());
  EXPECT_EQ(raw.first("SELECT group_concat(key || ' ' || type || ' ' || typeof(value) || ' ' || value, '; ') "
                      "FROM (SELECT * FROM defaults ORDER BY key)"),
            "data data blob 1; flag bool integer 1; number double real 1.0; text string text 1");
  EXPECT_EQ(raw.first("PRAGMA journal_mode"), "wal");
}

TEST_F(SqliteUserDefaultsTest, EverythingIsPrivateWhateverTheUmask) {
  const auto umaskBefore = ::umask(0);
  {
    const auto defaults = open();
    defaults->set("key", true);
    EXPECT_TRUE(defaults->flush());
    EXPECT_EQ(modeOf(folder.path("config")), 0700U);
    EXPECT_EQ(modeOf(directory()), 0700U);
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_EQ(modeOf(file() + "-wal"), 0600U);
    EXPECT_EQ(modeOf(file() + "-shm"), 0600U);
  }
  ::umask(umaskBefore);
}

TEST_F(SqliteUserDefaultsTest, AFileThatOthersCouldReadIsClosedToThem) {
  store("key", 0.5);
  ::chmod(directory().c_str(), 0755);
  ::chmod(file().c_str(), 0644);
  const auto defaults = open();
  EXPECT_EQ(defaults->real("key"), 0.5);
  EXPECT_EQ(modeOf(directory()), 0700U);
  EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(SqliteUserDefaultsTest, AnEmptyFileIsAnEmptyDatabase) {
  makeFile("");
  store("key", 0.5);
  EXPECT_EQ(open()->real("key"), 0.5);
  EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(SqliteUserDefaultsTest, TheEndOfTheObjectCommitsWhatIsLeft) {
  {
    const auto defaults = open();
    for (int index = 0; index < 100; ++index) defaults->set("key" + std::to_string(index), 1.0 * index);
  }
  EXPECT_EQ(RawDatabase(file()).first("SELECT count(*) FROM defaults"), "100");
  EXPECT_THAT(names(), ElementsAre("defaults.sqlite"));
}

TEST_F(SqliteUserDefaultsTest, AWriteIsCommittedWithoutBeingAskedFor) {
  const auto defaults = open();
  defaults->set("key", std::string("value"));
  RawDatabase raw(file());
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  std::string seen;
  while (seen.empty() && std::chrono::steady_clock::now() < deadline) {
    seen = raw.first("SELECT value FROM defaults WHERE key = 'key'");
    if (seen.empty()) std::this_thread::yield();
  }
  EXPECT_EQ(seen, "value");
}

TEST_F(SqliteUserDefaultsTest, ABurstIsMovedIntoTheDatabaseOnceItIsOver) {
  const auto defaults = open();
  for (int step = 0; step < 50; ++step) defaults->set("slider", step * 0.02);
  ASSERT_TRUE(defaults->flush());
  // What stands in the file itself, without its log, is what a loss of power can't take.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  std::string seen;
  while (seen != "0.98" && std::chrono::steady_clock::now() < deadline) {
    files::copy_file(file(), folder.path("copy.sqlite"), files::copy_options::overwrite_existing);
    // The copy may have caught the database in the middle of the move.
    RawDatabase copy(folder.path("copy.sqlite"));
    seen = copy.firstIfReadable("SELECT value FROM defaults WHERE key = 'slider'").value_or("");
    // The pause between two looks: the loop ends with the condition, and nothing tells of the move but the file itself.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(seen, "0.98");
}

// Kills. --------------------------------------------------------------------------------------------------------------

/// A recognisable value of this number, of a length that goes over several pages now and then.
Data patternOf(int number) {
  Data pattern(static_cast<std::size_t>(1 + (number * 37) % 9000), static_cast<std::byte>(number % 251));
  return pattern;
}

/// Writes rising numbers until it is killed; tells of each one that it knows to be committed.
int writeUntilKilled(const std::string& file, int start, int reports) {
  VirtualTime time;
  RecordingLogSink log;
  SqliteUserDefaults defaults(file, time, log);
  for (int number = start + 1;; ++number) {
    defaults.set("data", patternOf(number));
    defaults.set("number", static_cast<double>(number));
    if (number % 7 != 0) continue;
    if (!defaults.flush()) return 1;
    if (::write(reports, &number, sizeof number) != sizeof number) return 1;
  }
}

TEST_F(SqliteUserDefaultsTest, AKillAtAnyMomentLosesNothingThatWasCommitted) {
  const auto seed = std::random_device{}();
  RecordProperty("seed", std::to_string(seed));
  std::mt19937 random(seed);
  int last = 0;
  int reported = 0;
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE("round " + std::to_string(round) + ", QUILLMERE_SEED=" + std::to_string(seed));
    int reports[2];
    ASSERT_EQ(::pipe2(reports, O_CLOEXEC), 0);
    const pid_t child = startChild([&] { return writeUntilKilled(file(), last, reports[1]); });
    ASSERT_GT(child, 0);
    ::close(reports[1]);
    // Not a wait for something: the moment of the kill.
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 30000));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself";
    int committed = last;
    for (int number = 0; ::read(reports[0], &number, sizeof number) == sizeof number;) {
      committed = number;
      ++reported;
    }
    ::close(reports[0]);

    const auto defaults = open();
    const auto number = static_cast<int>(defaults->real("number").value_or(0.0));
    EXPECT_GE(number, committed);
    // The data of a number is written just before the number.
    const auto data = defaults->data("data").value_or(Data{});
    EXPECT_TRUE((number == 0 && data.empty()) || data == patternOf(number) || data == patternOf(number + 1));
    EXPECT_THAT(log.messages(), IsEmpty());
    last = number;
  }
  EXPECT_EQ(RawDatabase(file()).first("PRAGMA integrity_check"), "ok");
  EXPECT_GT(reported, 0) << "no writer lived long enough to commit anything, seed " << seed;
}

TEST_F(SqliteUserDefaultsTest, TheLogOfAKilledProcessIsPrivateAndIsRead) {
  int ready[2];
  ASSERT_EQ(::pipe2(ready, O_CLOEXEC), 0);
  const pid_t child = startChild([&]() -> int {
    SqliteUserDefaults defaults(file(), time, log);
    defaults.set("key", 0.25);
    const char done = defaults.flush() ? 'y' : 'n';
    static_cast<void>(::write(ready[1], &done, 1));
    while (true) ::pause();
  });
  char done = 'n';
  ASSERT_EQ(::read(ready[0], &done, 1), 1);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_EQ(done, 'y');
  EXPECT_EQ(modeOf(file() + "-wal"), 0600U);
  EXPECT_EQ(open()->real("key"), 0.25);
  ::close(ready[0]);
  ::close(ready[1]);
}

// Damage. -------------------------------------------------------------------------------------------------------------

TEST_F(SqliteUserDefaultsTest, AFileThatIsNoDatabaseIsMovedAsideAndAFreshOneBegun) {
  const std::string content = "this is not a database, but it is somebody's work: " + std::string(5000, 'x');
  makeFile(content);
  const auto defaults = open();
  EXPECT_FALSE(defaults->object("key"));
  EXPECT_EQ(contentOf(aside()), content);
  EXPECT_THAT(log.messages(), ElementsAre(file() + " is unreadable (file is not a database); moved aside as " +
                                          "defaults.sqlite.unreadable-" + virtualStamp));
  defaults->set("key", 0.5);
  EXPECT_TRUE(defaults->flush());
  EXPECT_EQ(open()->real("key"), 0.5);
}

TEST_F(SqliteUserDefaultsTest, TwoUnreadableFilesOfOneSecondAreBothKept) {
  makeFile(std::string(2000, 'a'));
  open();
  makeFile(std::string(2000, 'b'));
  open();
  EXPECT_EQ(contentOf(aside()), std::string(2000, 'a'));
  EXPECT_EQ(contentOf(aside("-2")), std::string(2000, 'b'));
}

TEST_F(SqliteUserDefaultsTest, ATruncatedDatabaseIsMovedAside) {
  {
    const auto defaults = open();
    for (int index = 0; index < 200; ++index) defaults->set("key" + std::to_string(index), std::string(200, 'v'));
  }
  files::resize_file(file(), files::file_size(file()) / 2);
  const auto truncated = contentOf(file());
  const auto defaults = open();
  EXPECT_FALSE(defaults->object("key0"));
  EXPECT_EQ(contentOf(aside()), truncated);
  EXPECT_THAT(log.messages(), SizeIs(1));
}

TEST_F(SqliteUserDefaultsTest, TheLogOfAnUnreadableDatabaseGoesWithIt) {
  makeFile(std::string(2000, 'a'));
  folder.write("config/quillmere/defaults.sqlite-wal", "its log");
  open();
  EXPECT_EQ(contentOf(aside("-wal")), "its log");
}

/// A database whose values can be read, and whose header says that it must not be written.
std::string withHeaderThatForbidsWriting(std::string content) {
  // The "file format write version" (www.sqlite.org/fileformat.html, 1.3.3): from 3 on a file is only to be read.
  content.at(18) = 3;
  return content;
}

TEST_F(SqliteUserDefaultsTest, AHeaderThatForbidsWritingIsDamageAndWhatCanBeReadIsKept) {
  store("key", 0.25);
  const auto content = withHeaderThatForbidsWriting(contentOf(file()));
  files::remove_all(directory());
  makeFile(content);
  const auto defaults = open();
  EXPECT_EQ(defaults->real("key"), 0.25);
  EXPECT_THAT(log.messages(), ElementsAre(file() + " is unreadable (its header says that it must not be written); " +
                                          "moved aside as defaults.sqlite.unreadable-" + virtualStamp));
  defaults->set("other", 0.5);
  EXPECT_TRUE(defaults->flush());
  EXPECT_EQ(open()->real("key"), 0.25);
  EXPECT_EQ(open()->real("other"), 0.5);
}

TEST_F(SqliteUserDefaultsTest, AHeaderWithoutALogThatForbidsWritingIsDamageToo) {
  store("key", 0.25);
  auto content = withHeaderThatForbidsWriting(contentOf(file()));
  // The "file format read version": of a database that keeps no log.
  content.at(19) = 1;
  files::remove_all(directory());
  makeFile(content);
  EXPECT_EQ(open()->real("key"), 0.25);
  EXPECT_EQ(contentOf(aside()), content);
  store("other", 0.5);
  EXPECT_EQ(open()->real("key"), 0.25);
  EXPECT_EQ(open()->real("other"), 0.5);
}

TEST_F(SqliteUserDefaultsTest, ALogWithoutItsDatabaseIsKept) {
  folder.write("config/quillmere/defaults.sqlite-wal", "somebody's last changes");
  const auto defaults = open();
  EXPECT_EQ(contentOf(aside("-wal")), "somebody's last changes");
  EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("there is a log, but no database")));
  defaults->set("key", true);
  EXPECT_TRUE(defaults->flush());
}

TEST_F(SqliteUserDefaultsTest, AnythingThatIsNoRegularFileIsMovedAside) {
  files::create_directories(file());
  folder.write("config/quillmere/defaults.sqlite/inner", "kept");
  store("key", 0.5);
  EXPECT_EQ(contentOf(aside() + "/inner"), "kept");
  EXPECT_EQ(open()->real("key"), 0.5);

  files::remove(file());
  ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
  store("key", 0.75);
  EXPECT_EQ(open()->real("key"), 0.75);
}

TEST_F(SqliteUserDefaultsTest, AnotherProgramsDatabaseIsMovedAsideUntouched) {
  files::create_directories(directory());
  {
    RawDatabase foreign(file());
    foreign.run("CREATE TABLE defaults (name TEXT, price REAL); INSERT INTO defaults VALUES ('tea', 2.5)");
  }
  store("key", 0.5);
  EXPECT_EQ(open()->real("key"), 0.5);
  EXPECT_EQ(RawDatabase(aside()).first("SELECT price FROM defaults WHERE name = 'tea'"), "2.5");
  EXPECT_THAT(log.messages(), ElementsAre(HasSubstr("is unreadable (no such column: key)")));
}

TEST_F(SqliteUserDefaultsTest, ARowOfAnUnknownKindIsLoggedLeftInPlaceAndCountsAsAbsent) {
  store("good", 0.5);
  RawDatabase(file()).run(
      "INSERT INTO defaults VALUES ('odd type', 'date', 5), ('bool text', 'bool', 'true'), ('bool 7', 'bool', 7), "
      "('int double', 'double', 1), ('blob string', 'string', x'00'), ('text data', 'data', 'abc'), "
      "('null string', 'string', NULL)");
  const auto defaults = open();
  EXPECT_EQ(defaults->real("good"), 0.5);
  for (const char* key : {"odd type", "bool text", "bool 7", "int double", "blob string", "text data", "null string"}) {
    EXPECT_FALSE(defaults->object(key)) << key;
  }
  EXPECT_EQ(log.lines().size(), 7U);
  EXPECT_EQ(log.count(LogLevel::error, "stored odd type ignored: its value does not fit the type \"date\""), 1);
  defaults->set("other", true);
  ASSERT_TRUE(defaults->flush());
  EXPECT_EQ(RawDatabase(file()).first("SELECT value FROM defaults WHERE key = 'odd type'"), "5");

  defaults->set("odd type", std::string("replaced"));
  ASSERT_TRUE(defaults->flush());
  EXPECT_EQ(RawDatabase(file()).first("SELECT value FROM defaults WHERE key = 'odd type'"), "replaced");
}

TEST_F(SqliteUserDefaultsTest, RandomDamageNeverKeepsTheProgramFromStoring) {
  const char* given = std::getenv("QUILLMERE_SEED");
  const auto seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  std::mt19937 random(seed);
  for (int index = 0; index < 60; ++index) store("key" + std::to_string(index), std::string(100, 'v'));
  const auto healthy = contentOf(file());
  int movedAside = 0;
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE("round " + std::to_string(round) + ", QUILLMERE_SEED=" + std::to_string(seed));
    auto damaged = healthy;
    for (auto count = 1 + random() % 40; count > 0; --count) {
      damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
    }
    if (round % 4 == 0) damaged.resize(random() % damaged.size());
    files::remove_all(directory());
    makeFile(damaged);
    log.clear();
    {
      const auto defaults = open();
      defaults->set("new", static_cast<double>(round));
      EXPECT_TRUE(defaults->flush()) << testing::PrintToString(log.messages());
    }
    EXPECT_EQ(open()->real("new"), static_cast<double>(round));
    if (!log.lines().empty() && files::exists(aside())) ++movedAside;
  }
  EXPECT_GT(movedAside, 0);
}

// Places that can't be written. ---------------------------------------------------------------------------------------

TEST_F(SqliteUserDefaultsTest, WhereNoFileCanBeMadeSettingsLastInMemory) {
  folder.write("config", "a file where a directory should be");
  const auto defaults = open();
  EXPECT_THAT(log.messages(),
              ElementsAre("settings are kept in memory only, " + file() + " can't be written: Not a directory"));
  defaults->set("key", 0.5);
  EXPECT_EQ(defaults->real("key"), 0.5);
  defaults->remove("key");
  EXPECT_FALSE(defaults->object("key"));
  EXPECT_FALSE(defaults->flush());
}

TEST_F(SqliteUserDefaultsTest, WithoutAHomeDirectorySettingsLastInMemory) {
  SqliteUserDefaults defaults({}, time, log);
  defaults.set("key", 0.5);
  EXPECT_EQ(defaults.real("key"), 0.5);
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(SqliteUserDefaultsTest, AReadOnlyPlaceIsStillRead) {
  store("key", 0.5);
  ::chmod(folder.path().c_str(), 0755);
  ::chmod(folder.path("config").c_str(), 0755);
  ::chmod(directory().c_str(), 0555);
  ::chmod(file().c_str(), 0444);
  const auto before = contentOf(file());
  // The superuser can write anywhere, so the look is taken as somebody else.
  const pid_t child = startChild([&] {
    if (::getuid() == 0 && ::setuid(65534) != 0) return 10;
    SqliteUserDefaults defaults(file(), time, log);
    if (log.lines().size() != 1) return 11;
    if (defaults.real("key") != 0.5) return 12;
    defaults.set("key", 0.75);
    if (defaults.real("key") != 0.75) return 13;
    return defaults.flush() ? 14 : 0;
  });
  EXPECT_EQ(exitCodeOf(child), 0);
  EXPECT_EQ(contentOf(file()), before);
  ::chmod(directory().c_str(), 0700);
}

/// Makes files longer than `bytes` fail in this process; absent lifts the limit.
void limitFiles(std::optional<rlim_t> bytes) {
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = bytes.value_or(limit.rlim_max);
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

TEST_F(SqliteUserDefaultsTest, AFullDiskKeepsTheChangeUntilThereIsRoom) {
  // A limit on the size of files stands in for the disk; it holds for a process, so the test has one of its own.
  const pid_t child = startChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    SqliteUserDefaults defaults(file(), time, log);
    defaults.set("before", true);
    if (!defaults.flush()) return 10;
    limitFiles(4096);
    defaults.set("key", std::string(100000, 'x'));
    if (defaults.flush()) return 11;
    if (!defaults.string("key")) return 12;
    if (log.lines().empty() || log.lines()[0].message.find("trying again") == std::string::npos) return 13;
    limitFiles(std::nullopt);
    if (!storesInTime(defaults)) return 20;
    return 0;
  });
  EXPECT_EQ(exitCodeOf(child), 0);
  const auto defaults = open();
  EXPECT_EQ(defaults->string("key"), std::string(100000, 'x'));
  EXPECT_EQ(defaults->boolean("before"), true);
}

TEST_F(SqliteUserDefaultsTest, WhatWasReadOfADamagedFileIsWrittenAgainUntilThereIsRoom) {
  store("key", std::string(100000, 'x'));
  const auto content = withHeaderThatForbidsWriting(contentOf(file()));
  files::remove_all(directory());
  makeFile(content);
  const pid_t child = startChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    // Room for a fresh database and what SQLite keeps beside it, and none for the value.
    limitFiles(65536);
    SqliteUserDefaults defaults(file(), time, log);
    if (!defaults.string("key")) return 10;
    if (defaults.flush()) return 11;
    limitFiles(std::nullopt);
    if (!storesInTime(defaults)) return 20;
    // The end of the object would store it too: another look, while it lives.
    return RawDatabase(file()).first("SELECT length(value) FROM defaults") == "100000" ? 0 : 12;
  });
  EXPECT_EQ(exitCodeOf(child), 0);
  EXPECT_EQ(open()->string("key"), std::string(100000, 'x'));
}

TEST_F(SqliteUserDefaultsTest, WhatWasReadOfADamagedFileWaitsForRoomForAFreshFile) {
  store("key", std::string("value"));
  const auto content = withHeaderThatForbidsWriting(contentOf(file()));
  files::remove_all(directory());
  makeFile(content);
  // What SQLite keeps beside a file is there already while another process reads it, so reading needs no room.
  int ready[2];
  ASSERT_EQ(::pipe2(ready, O_CLOEXEC), 0);
  const pid_t reader = startChild([&]() -> int {
    RawDatabase raw(file());
    const char done = raw.first("SELECT value FROM defaults") == "value" ? 'y' : 'n';
    static_cast<void>(::write(ready[1], &done, 1));
    while (true) ::pause();
  });
  char done = 'n';
  ASSERT_EQ(::read(ready[0], &done, 1), 1);
  ASSERT_EQ(done, 'y');
  const pid_t child = startChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    limitFiles(1024);
    SqliteUserDefaults defaults(file(), time, log);
    if (defaults.string("key") != "value") return 10;
    defaults.set("other", 0.5);
    if (defaults.flush()) return 11;
    limitFiles(std::nullopt);
    return storesInTime(defaults) ? 0 : 20;
  });
  EXPECT_EQ(exitCodeOf(child), 0);
  ::kill(reader, SIGKILL);
  ::waitpid(reader, nullptr, 0);
  ::close(ready[0]);
  ::close(ready[1]);
  EXPECT_EQ(contentOf(aside()), content);
  const auto defaults = open();
  EXPECT_EQ(defaults->string("key"), "value");
  EXPECT_EQ(defaults->real("other"), 0.5);
}

/// Doesn't return from the first line that another thread than its maker's writes until it is let go.
class HoldingLogSink final : public LogSink {
 public:
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {
    if (std::this_thread::get_id() == maker_) return;
    std::unique_lock lock(mutex_);
    isHeld_ = true;
    changed_.notify_all();
    // The deadline only lets a test that fails come to an end.
    wasLetGo_ = changed_.wait_for(lock, std::chrono::seconds(10), [this] { return isLetGo_; });
    changed_.notify_all();
  }
  void waitUntilHeld() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isHeld_; });
  }
  void letGo() {
    const std::lock_guard lock(mutex_);
    isLetGo_ = true;
    changed_.notify_all();
  }
  /// Whether the line was let go before its deadline.
  bool wasLetGo() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [this] { return wasLetGo_; });
    return wasLetGo_;
  }

 private:
  const std::thread::id maker_ = std::this_thread::get_id();
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isHeld_ = false;
  bool isLetGo_ = false;
  bool wasLetGo_ = false;
};

TEST_F(SqliteUserDefaultsTest, AReadDoesNotWaitForALogThatIsSlow) {
  const pid_t child = startChild([&] {
    ::signal(SIGXFSZ, SIG_IGN);
    HoldingLogSink slow;
    SqliteUserDefaults defaults(file(), time, slow);
    defaults.set("before", true);
    if (!defaults.flush()) return 10;
    limitFiles(4096);
    defaults.set("key", std::string(100000, 'x'));
    slow.waitUntilHeld();
    if (defaults.boolean("before") != true) return 11;
    defaults.set("other", 0.5);
    slow.letGo();
    if (!slow.wasLetGo()) return 12;
    limitFiles(std::nullopt);
    if (!storesInTime(defaults)) return 20;
    return 0;
  });
  EXPECT_EQ(exitCodeOf(child), 0);
  EXPECT_EQ(open()->real("other"), 0.5);
}

// Other processes, and meddling while the program runs. ---------------------------------------------------------------

TEST_F(SqliteUserDefaultsTest, TwoProcessesWriteSideBySide) {
  std::vector<pid_t> children;
  for (const char* name : {"a", "b", "c"}) {
    children.push_back(startChild([&] {
      SqliteUserDefaults defaults(file(), time, log);
      for (int index = 0; index < 100; ++index) {
        defaults.set(std::string(name) + std::to_string(index), static_cast<double>(index));
        if (!defaults.flush()) return 1;
      }
      return log.lines().empty() ? 0 : 2;
    }));
  }
  for (const auto child : children) EXPECT_EQ(exitCodeOf(child), 0);
  EXPECT_EQ(RawDatabase(file()).first("SELECT count(*) FROM defaults"), "300");
  EXPECT_EQ(RawDatabase(file()).first("PRAGMA integrity_check"), "ok");
  EXPECT_THAT(names(), ElementsAre("defaults.sqlite"));
}

TEST_F(SqliteUserDefaultsTest, ProcessesThatMeetADamagedFileMoveItAsideOnce) {
  makeFile(std::string(3000, 'z'));
  std::vector<pid_t> children;
  for (const char* name : {"a", "b", "c", "d"}) {
    children.push_back(startChild([&] {
      SqliteUserDefaults defaults(file(), time, log);
      defaults.set(name, true);
      return defaults.flush() ? 0 : 1;
    }));
  }
  for (const auto child : children) EXPECT_EQ(exitCodeOf(child), 0);
  EXPECT_EQ(RawDatabase(file()).first("SELECT count(*) FROM defaults"), "4");
  EXPECT_EQ(contentOf(aside()), std::string(3000, 'z'));
  EXPECT_THAT(names(), SizeIs(2));
}

TEST_F(SqliteUserDefaultsTest, AStartReadsWhileAnotherProcessHoldsTheFileForWriting) {
  store("key", 0.5);
  RawDatabase other(file());
  other.run("BEGIN IMMEDIATE; INSERT INTO defaults VALUES ('theirs', 'bool', 1)");
  const auto defaults = open();
  EXPECT_EQ(defaults->real("key"), 0.5);
  EXPECT_FALSE(defaults->object("theirs"));
  defaults->set("key", 0.75);
  EXPECT_EQ(defaults->real("key"), 0.75);
  other.run("COMMIT");
  ASSERT_TRUE(storesInTime(*defaults));
  EXPECT_EQ(other.first("SELECT value FROM defaults WHERE key = 'key'"), "0.75");
  EXPECT_EQ(other.first("SELECT value FROM defaults WHERE key = 'theirs'"), "1");
}

TEST_F(SqliteUserDefaultsTest, AFileThatIsDeletedWhileItIsInUseIsWrittenAnew) {
  const auto defaults = open();
  defaults->set("first", 1.0);
  ASSERT_TRUE(defaults->flush());
  files::remove_all(directory());
  defaults->set("second", 2.0);
  ASSERT_TRUE(defaults->flush());
  EXPECT_THAT(log.messages(), ElementsAre(file() + " is gone; it is written anew"));
  RawDatabase raw(file());
  EXPECT_EQ(raw.first("SELECT value FROM defaults WHERE key = 'first'"), "1.0");
  EXPECT_EQ(raw.first("SELECT value FROM defaults WHERE key = 'second'"), "2.0");
  EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(SqliteUserDefaultsTest, ATableThatGoesWhileItIsInUseIsWrittenAnew) {
  const auto defaults = open();
  defaults->set("first", 1.0);
  ASSERT_TRUE(defaults->flush());
  RawDatabase(file()).run("DROP TABLE defaults");
  defaults->set("second", 2.0);
  ASSERT_TRUE(defaults->flush());
  RawDatabase raw(file());
  EXPECT_EQ(raw.first("SELECT value FROM defaults WHERE key = 'first'"), "1.0");
  EXPECT_EQ(raw.first("SELECT value FROM defaults WHERE key = 'second'"), "2.0");
  EXPECT_TRUE(files::exists(aside()));
}

TEST_F(SqliteUserDefaultsTest, AValueThatTheDatabaseRefusesDoesNotHoldUpTheOthers) {
  store("key", 0.0);
  RawDatabase(file()).run(
      "CREATE TRIGGER no BEFORE INSERT ON defaults WHEN new.key = 'bad' BEGIN SELECT raise(ABORT, 'no'); END");
  const auto defaults = open();
  defaults->set("bad", true);
  defaults->set("key", 1.0);
  ASSERT_TRUE(defaults->flush());
  EXPECT_THAT(log.messages(), ElementsAre("bad not stored: no"));
  EXPECT_EQ(open()->real("key"), 1.0);
}

}  // namespace
}  // namespace quillmere
