// Texts from outside: broken bytes, control characters, endless ones.
#include "platform/linux/text/CleanText.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(CleanText, OrdinaryTextPasses) { EXPECT_EQ(cleanText("Für Elise – №1 🎵", 1024), "Für Elise – №1 🎵"); }

TEST(CleanText, BrokenBytesBecomeReplacementCharacters) {
  EXPECT_EQ(cleanText("a\xFFz", 100), "a\xEF\xBF\xBDz");
  EXPECT_EQ(cleanText("a\xE2\x82", 100), "a\xEF\xBF\xBD\xEF\xBF\xBD") << "cut in the middle of a character";
}

TEST(CleanText, ControlCharactersBecomeBlanks) {
  EXPECT_EQ(cleanText("one\ntwo\tthree", 100), "one two three");
  EXPECT_EQ(cleanText(std::string_view("a\0b", 3), 100), "a b");
}

TEST(CleanText, BlanksAtTheEndsGo) {
  EXPECT_EQ(cleanText("  title \n", 100), "title");
  EXPECT_EQ(cleanText(" \t\n ", 100), "");
}

TEST(CleanText, ALongTextIsCutBetweenCharacters) {
  const std::string text(4096, 'x');
  EXPECT_EQ(cleanText(text, 256).size(), 256U);
  EXPECT_EQ(cleanText("ab\xE2\x82\xAC", 4), "ab") << "no half euro sign";
  EXPECT_EQ(cleanText("ab\xE2\x82\xAC", 5), "ab\xE2\x82\xAC");
}

}  // namespace
}  // namespace quillmere
