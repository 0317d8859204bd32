// The status item's texts in the language of the session, through the C library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <locale.h>

#include <cstdlib>
#include <sstream>

#include "core/Texts.h"
#include "platform/linux/GettextTexts.h"
#include "platform/linux/SessionLanguages.h"
#include "shell/LaunchOptions.h"
#include "shell/StatusMenu.h"

namespace quillmere {
namespace {

using testing::ElementsAre;

class TrayTexts : public testing::Test {
 protected:
  ~TrayTexts() override {
    useTexts(nullptr);
    ::setlocale(LC_ALL, "C");
  }

  /// As a session with these variables starts the program.
  static void start(const char* locale, const char* list = nullptr) {
    ::setenv("LOCPATH", QUILLMERE_TEST_LOCALES, 1);
    ::setenv("LC_ALL", locale, 1);
    if (list != nullptr) {
      ::setenv("LANGUAGE", list, 1);
    } else {
      ::unsetenv("LANGUAGE");
    }
    languages_ = sessionLanguages();
    useGettextTexts({"no-such-folder", QUILLMERE_TEST_CATALOGUES});
  }
  static std::vector<std::string> titles(const std::vector<StatusMenuEntry>& entries) {
    std::vector<std::string> result;
    for (const auto& entry : entries) result.push_back(entry.action == StatusAction::separator ? "-" : entry.title);
    return result;
  }

  static inline std::vector<std::string> languages_;
};

TEST_F(TrayTexts, MenuIsGermanInAGermanSession) {
  start("de_DE.UTF-8");
  StatusMenuInput input;
  EXPECT_THAT(
      titles(statusMenu(input)),
      ElementsAre("quillmere-Fenster öffnen", "-", "Flüstermodus einschalten", "Schlummertimer", "Profile", "-",
                  "Einstellungen …", "Über quillmere", "Nach Aktualisierungen suchen …", "-", "quillmere beenden"));
  EXPECT_THAT(titles(statusMenu(input)[3].submenu),
              ElementsAre("15 Minuten", "30 Minuten", "45 Minuten", "60 Minuten", "90 Minuten"));
  input.isWhisperMode = true;
  input.updateKnown = true;
  input.now = Date{100.0};
  input.sleepTimerEndsAt = Date{105.0};
  const auto menu = statusMenu(input);
  EXPECT_EQ(menu[2].title, "Flüstermodus aufheben");
  EXPECT_EQ(menu[3].title, "Schlummertimer · 0:05");
  EXPECT_THAT(titles(menu[3].submenu), ElementsAre("Schlummertimer abbrechen"));
  EXPECT_EQ(menu[8].title, "Aktualisierung herunterladen …");
}

TEST_F(TrayTexts, KeysAndActionsAreTheSameInEveryLanguage) {
  const auto english = statusMenu({});
  start("de_DE.UTF-8");
  auto german = statusMenu({});
  ASSERT_EQ(german.size(), english.size());
  for (std::size_t i = 0; i < german.size(); ++i) {
    EXPECT_EQ(german[i].key, english[i].key);
    EXPECT_EQ(german[i].action, english[i].action);
    EXPECT_EQ(german[i].representedObject, english[i].representedObject);
  }
}

TEST_F(TrayTexts, PluralFormsAreThoseOfTheLanguage) {
  start("de_DE.UTF-8");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 1), "1 Minute");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 0), "0 Minuten");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 15), "15 Minuten");
  start("en_US.UTF-8");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 1), "1 minute");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 0), "0 minutes");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 15), "15 minutes");
}

TEST_F(TrayTexts, ListOfLanguagesComesBeforeTheLocale) {
  start("en_US.UTF-8", "de:en");
  EXPECT_EQ(translated("Quit quillmere"), "quillmere beenden");
  EXPECT_THAT(languages_, ElementsAre("de", "en"));
}

TEST_F(TrayTexts, EnglishBeforeGermanIsEnglish) {
  start("de_DE.UTF-8", "en_GB:de");
  EXPECT_EQ(translated("Quit quillmere"), "Quit quillmere");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 2), "2 minutes");
}

TEST_F(TrayTexts, LanguageWithoutACatalogueLeavesThePlaceToTheNext) {
  start("pl_PL.UTF-8", "pl:de");
  EXPECT_EQ(translated("Quit quillmere"), "quillmere beenden");
}

TEST_F(TrayTexts, UnknownLanguageIsEnglish) {
  start("pl_PL.UTF-8");
  EXPECT_EQ(translated("Quit quillmere"), "Quit quillmere");
  EXPECT_EQ(translatedCount("%1 minute", "%1 minutes", 22), "22 minutes");
}

TEST_F(TrayTexts, SessionWithoutALanguageIsEnglishWhateverTheListSays) {
  start("C", "de");
  EXPECT_EQ(translated("Quit quillmere"), "Quit quillmere");
  EXPECT_TRUE(languages_.empty());
}

TEST_F(TrayTexts, LocaleThatTheSystemLacksIsEnglishForBothProgramsAlike) {
  start("fr_FR.UTF-8", "de");
  EXPECT_EQ(translated("Quit quillmere"), "Quit quillmere");
  EXPECT_TRUE(languages_.empty());
}

TEST_F(TrayTexts, WithoutCataloguesTextsAreEnglish) {
  ::setenv("LOCPATH", QUILLMERE_TEST_LOCALES, 1);
  ::setenv("LC_ALL", "de_DE.UTF-8", 1);
  sessionLanguages();
  useGettextTexts({"no-such-folder"});
  EXPECT_EQ(translated("Quit quillmere"), "Quit quillmere");
}

TEST_F(TrayTexts, NumbersOfTheProgramStayAsTheyAreInAGermanSession) {
  start("de_DE.UTF-8");
  EXPECT_DOUBLE_EQ(std::strtod("0.5", nullptr), 0.5);
  EXPECT_EQ(std::to_string(0.5), "0.500000");
}

TEST_F(TrayTexts, HelpIsGermanToo) {
  start("de_DE.UTF-8");
  std::ostringstream out;
  std::ostringstream problems;
  int exitCode = -1;
  std::string program = "quillmere";
  std::string option = "--help";
  char* arguments[] = {program.data(), option.data(), nullptr};
  EXPECT_FALSE(parseArguments(2, arguments, out, problems, exitCode));
  EXPECT_THAT(out.str(), testing::StartsWith("Aufruf: quillmere [Optionen]\n"));
}

}  // namespace
}  // namespace quillmere
