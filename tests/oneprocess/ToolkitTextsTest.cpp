// The menu's texts where there is no C library that finds them.
#include "app/oneprocess/ToolkitTexts.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "core/Texts.h"

namespace quillmere {
namespace {

class TextsOfTheMenu : public ::testing::Test {
 protected:
  ~TextsOfTheMenu() override { useTexts(nullptr); }

  int count_ = 1;
  char name_[6] = "texts";
  char* arguments_[2] = {name_, nullptr};
  QCoreApplication application_{count_, arguments_};
};

TEST_F(TextsOfTheMenu, AreThoseOfTheFirstLanguageThatThereIs) {
  useToolkitTexts({"xx", "de_AT", "en"});
  EXPECT_EQ(translated("Cancel sleep timer"), "Schlummertimer abbrechen");
}

TEST_F(TextsOfTheMenu, FollowTheLanguagesRuleForNumbers) {
  useToolkitTexts({"de"});
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 1), "1 Minute");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 30), "30 Minuten");
}

TEST_F(TextsOfTheMenu, AreEnglishForWhoWantsThatBeforeAnother) {
  useToolkitTexts({"en_GB", "de"});
  EXPECT_EQ(translated("Cancel sleep timer"), "Cancel sleep timer");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 30), "30 minutes");
}

TEST_F(TextsOfTheMenu, StayAsTheyAreWrittenWhereThereIsNoTranslation) {
  useToolkitTexts({"de"});
  EXPECT_EQ(translated("No text of the program"), "No text of the program");
}

}  // namespace
}  // namespace quillmere
