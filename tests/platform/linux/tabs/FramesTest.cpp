// Messages after their length.
#include "platform/linux/tabs/Frames.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace quillmere::tabs {
namespace {

std::string length(std::uint32_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

TEST(Frames, AMessageIsReadAsItWasWritten) {
  FrameReader reader;
  reader.append(framed(R"({"a":1})") + framed("") + framed("é\n\t"));
  EXPECT_EQ(reader.next(), R"({"a":1})");
  EXPECT_EQ(reader.next(), "");
  EXPECT_EQ(reader.next(), "é\n\t");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_FALSE(reader.hasPart());
}

TEST(Frames, AMessageThatComesByteForByteIsOne) {
  FrameReader reader;
  std::vector<std::string> messages;
  for (const char byte : framed("one") + framed("two")) {
    reader.append({&byte, 1});
    while (auto message = reader.next()) messages.push_back(*message);
  }
  EXPECT_EQ(messages, (std::vector<std::string>{"one", "two"}));
}

TEST(Frames, HalfAMessageIsAPart) {
  FrameReader reader;
  reader.append(framed("whole") + length(10) + "half");
  EXPECT_EQ(reader.next(), "whole");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_TRUE(reader.hasPart());
  EXPECT_FALSE(reader.impossibleLength());
}

TEST(Frames, HalfALengthIsAPart) {
  FrameReader reader;
  reader.append("\x05");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_TRUE(reader.hasPart());
}

TEST(Frames, TheLargestMessageIsTaken) {
  FrameReader reader;
  reader.append(framed(std::string(largestFrame, 'x')));
  const auto message = reader.next();
  ASSERT_TRUE(message);
  EXPECT_EQ(message->size(), largestFrame);
}

TEST(Frames, ALongerOneEndsTheReadingBeforeAnyOfItIsKept) {
  FrameReader reader;
  reader.append(framed("before") + length(100'000'000) + "the beginning");
  EXPECT_EQ(reader.next(), "before");
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_EQ(reader.impossibleLength(), 100'000'000U);
  reader.append(framed("after"));
  EXPECT_EQ(reader.next(), std::nullopt);
  EXPECT_FALSE(reader.hasPart());
}

}  // namespace
}  // namespace quillmere::tabs
