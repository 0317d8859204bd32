// Long texts of others, cut.
#include "core/Shortened.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere {
namespace {

TEST(Shortened, ATextThatFitsStaysAsItIs) {
  EXPECT_EQ(shortened("12345678", 8), "12345678");
  EXPECT_EQ(shortened("", 8), "");
}

TEST(Shortened, ALongerOneKeepsItsBeginningAndItsEnd) {
  EXPECT_EQ(shortened("beginning, middle, end", 11), "begi… end");
}

TEST(Shortened, IsNeverLongerThanAllowed) {
  const std::string text(100000, 'x');
  for (const std::size_t bytes : {8, 9, 10, 1023, 1024}) EXPECT_EQ(shortened(text, bytes).size(), bytes);
}

TEST(Shortened, CutsBetweenCharacters) {
  std::string text;
  for (int each = 0; each < 1000; ++each) text += "שé🎧音";
  for (std::size_t bytes = 8; bytes < 64; ++bytes) {
    const auto result = shortened(text, bytes);
    EXPECT_LE(result.size(), bytes);
    EXPECT_GT(result.size() + 7, bytes);
    // Both pieces are whole characters of the text.
    const auto gap = result.find("…");
    ASSERT_NE(gap, std::string::npos);
    EXPECT_TRUE(text.starts_with(result.substr(0, gap)));
    EXPECT_NE(static_cast<unsigned char>(text[gap]) & 0xC0U, 0x80U) << "the cut before the gap is within a character";
    const auto tail = result.substr(gap + 3);
    EXPECT_TRUE(text.ends_with(tail));
    EXPECT_TRUE(tail.empty() || (static_cast<unsigned char>(tail.front()) & 0xC0U) != 0x80U);
  }
}

TEST(Shortened, WhatIsNoUtf8IsCutToo) {
  const std::string text(1000, '\x80');
  EXPECT_LE(shortened(text, 64).size(), 64U);
  EXPECT_EQ(shortenedAddress(text, 64).size(), 64U);
}

TEST(ShortenedAddress, KeepsTheBeginning) {
  EXPECT_EQ(shortenedAddress("https://example.org/a/b/c", 21), "https://example.org/a");
  EXPECT_EQ(shortenedAddress("https://example.org", 19), "https://example.org");
}

TEST(ShortenedAddress, HalvesNoEscapedCharacter) {
  EXPECT_EQ(shortenedAddress("a/%C3%A9", 7), "a/%C3");
  EXPECT_EQ(shortenedAddress("a/%C3%A9", 6), "a/%C3");
  EXPECT_EQ(shortenedAddress("a/%C3%A9", 5), "a/%C3");
  EXPECT_EQ(shortenedAddress("a/%C3%A9", 4), "a/");
  EXPECT_EQ(shortenedAddress("a/%C3%A9", 3), "a/");
}

TEST(ShortenedAddress, HalvesNoCharacter) { EXPECT_EQ(shortenedAddress("a/éé", 5), "a/é"); }

}  // namespace
}  // namespace quillmere
