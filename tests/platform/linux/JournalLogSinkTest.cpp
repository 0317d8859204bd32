// Where log lines go with and without a journal.
#include "platform/linux/JournalLogSink.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace quillmere
