// Texts without the toolkit: English where nobody has another one.
#include "core/Texts.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

constexpr TextCatalogue shouting{
    [](const char*) -> const char* { return "LOUD %1!"; },
    [](const char*, const char*, unsigned long number) -> const char* { return number < 5 ? "FEW: %1" : "MANY: %1"; }};

class Texts : public testing::Test {
 protected:
  ~Texts() override { useTexts(nullptr); }
};

TEST_F(Texts, AreEnglishWithoutACatalogue) {
  EXPECT_EQ(translated("Quit"), "Quit");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 1), "1 minute");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 0), "0 minutes");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 2), "2 minutes");
}

TEST_F(Texts, ComeFromTheCatalogue) {
  useTexts(&shouting);
  EXPECT_EQ(translated("hello", "you"), "LOUD you!");
  EXPECT_EQ(translatedCount("one", "many", 3), "FEW: 3");
  EXPECT_EQ(translatedCount("one", "many", 7), "MANY: 7");
}

TEST_F(Texts, PlaceInAValueIsLeftAlone) { EXPECT_EQ(translated("%1 Copy", "100%1"), "100%1 Copy"); }

TEST_F(Texts, TextWithoutAPlaceStaysWhole) { EXPECT_EQ(translated("Quit", "now"), "Quit"); }

}  // namespace
}  // namespace quillmere
