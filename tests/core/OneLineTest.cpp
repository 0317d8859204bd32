// Names on one line.
#include "core/OneLine.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(OneLine, LeavesATextOfOneLineAsItIs) {
  EXPECT_EQ(oneLine("Café — 音楽 🎧"), "Café — 音楽 🎧");
  EXPECT_EQ(oneLine(""), "");
}

TEST(OneLine, EveryKindOfLineEndIsABlank) {
  for (const auto* end : {"\n", "\r\n", "\t", "\v", "\x7F", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
    EXPECT_EQ(oneLine(std::string("first") + end + "second"), "first second") << end;
  }
}

TEST(OneLine, ARunOfThemIsOneBlank) {
  EXPECT_EQ(oneLine("a\n\n\r\xE2\x80\xA8"
                    "b"),
            "a b");
}

TEST(OneLine, ControlCharactersBehindAsciiAreBlanksToo) {
  for (const auto* control : {"\u0080", "\u009B", "\u009F"}) {
    EXPECT_EQ(oneLine(std::string("first") + control + "second"), "first second");
  }
  EXPECT_EQ(oneLine("a\u00A0b"), "a\u00A0b") << "a blank that doesn't break is none";
  EXPECT_EQ(oneLine("\xC2"), "\xC2");
}

TEST(OneLine, ABrokenTextStaysAsBrokenAsItIs) { EXPECT_EQ(oneLine("\xE2\x80"), "\xE2\x80"); }

}  // namespace
}  // namespace quillmere
