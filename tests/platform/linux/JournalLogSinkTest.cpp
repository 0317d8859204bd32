// Where log lines go with and without a journal.
#include "platform/linux/JournalLogSink.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"

namespace quillmere {
namespace {

TEST(JournalLogSink, WithoutAJournalLinesGoToStandardError) {
  JournalLogSink sink("/nowhere/journal/socket");
  EXPECT_FALSE(sink.writesToJournal());
  ::testing::internal::CaptureStderr();
  sink.write(LogLevel::error, "app.quillmere.host", "Test", "a line");
  const auto text = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(text.find("error [Test] a line\n"), std::string::npos) << text;
}

TEST(JournalLogSink, APlainFileIsNoJournal) {
  support::TemporaryFolder folder;
  folder.write("socket", "");
  EXPECT_FALSE(JournalLogSink(folder.path("socket")).writesToJournal());
}

TEST(JournalLogSink, InfoThatIsSaidAgainIsWrittenOnceAndAnythingElseEachTime) {
  JournalLogSink sink("/nowhere/journal/socket");
  ::testing::internal::CaptureStderr();
  for (int time = 0; time < 3; ++time) {
    sink.write(LogLevel::info, "app.quillmere.host", "Test", "seven found");
    sink.write(LogLevel::info, "app.quillmere.host", "Other", "seven found");
    sink.write(LogLevel::standard, "app.quillmere.host", "Test", "noted");
    sink.write(LogLevel::error, "app.quillmere.host", "Test", "failed");
  }
  const auto text = ::testing::internal::GetCapturedStderr();
  const auto count = [&text](std::string_view line) {
    int found = 0;
    for (auto at = text.find(line); at != std::string::npos; at = text.find(line, at + 1)) ++found;
    return found;
  };
  EXPECT_EQ(count("info [Test] seven found\n"), 1) << text;
  EXPECT_EQ(count("info [Other] seven found\n"), 1) << text;
  EXPECT_EQ(count("[Test] noted\n"), 3) << text;
  EXPECT_EQ(count("error [Test] failed\n"), 3) << text;
}

TEST(RepeatedLines, ALineIsNewsAgainWhenItHasNotComeForAMinute) {
  RepeatedLines lines;
  const MonotonicTime start{};
  EXPECT_TRUE(lines.isNews("Test", "seven", start));
  for (int seconds = 3; seconds <= 600; seconds += 3) {
    EXPECT_FALSE(lines.isNews("Test", "seven", start + std::chrono::seconds(seconds)));
  }
  EXPECT_TRUE(lines.isNews("Test", "eight", start + std::chrono::seconds(601)));
  EXPECT_FALSE(lines.isNews("Test", "seven", start + std::chrono::seconds(659)));
  EXPECT_TRUE(lines.isNews("Test", "seven", start + std::chrono::seconds(719)));
}

TEST(RepeatedLines, OnlyTheLatestLinesAreRemembered) {
  RepeatedLines lines;
  const MonotonicTime now{};
  EXPECT_TRUE(lines.isNews("Test", "first", now));
  for (std::size_t number = 1; number < RepeatedLines::most; ++number) {
    EXPECT_TRUE(lines.isNews("Test", std::to_string(number), now));
  }
  EXPECT_FALSE(lines.isNews("Test", "first", now));
  EXPECT_TRUE(lines.isNews("Test", "one more", now));
  EXPECT_TRUE(lines.isNews("Test", "1", now));
}

}  // namespace
}  // namespace quillmere
