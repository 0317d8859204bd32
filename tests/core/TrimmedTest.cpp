// A text without the blanks around it.
#include "core/Trimmed.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere {
namespace {

TEST(Trimmed, TakesWhiteSpaceFromBothEndsAndLeavesItWithin) { EXPECT_EQ(trimmed(" \t a  b \r\n"), "a  b"); }

TEST(Trimmed, ATextOfNothingElseIsEmpty) {
  EXPECT_EQ(trimmed("   "), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Trimmed, TakesEveryBlankAndLineEndOfUnicode) {
  for (const auto* blank : {"\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
                            "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
                            "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
    EXPECT_EQ(trimmed(std::string(blank) + "a" + blank), "a") << blank;
  }
}

TEST(Trimmed, LeavesWhatHasNoWidthOrIsNoBlank) {
  for (const std::string kept : {"\u200B", "\u180E", "\uFEFF", "\u00AD", "\x01", "\x1F", "\u2060"}) {
    EXPECT_EQ(trimmed(kept), kept);
  }
}

TEST(Trimmed, BytesThatAreNoUtf8StayAsTheyAre) {
  EXPECT_EQ(trimmed(" \xE2\x80 "), "\xE2\x80");
  EXPECT_EQ(trimmed("\x85"), "\x85") << "next line is two bytes";
  EXPECT_EQ(trimmed("\xE3\x80\xA0"), "\xE3\x80\xA0") << "a character that ends like a blank";
}

}  // namespace
}  // namespace quillmere
