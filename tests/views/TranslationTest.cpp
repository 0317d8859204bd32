// The windows' texts in the languages that there are.
#include "views/Translation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>

#include "views/shared/AppCount.h"
#include "views/shared/PercentText.h"

namespace quillmere {
namespace {

class Translation : public testing::Test {
 protected:
  ~Translation() override { installTranslation({}); }
};

QString shown(const char* context, const char* source, int number = -1) {
  return QCoreApplication::translate(context, source, nullptr, number);
}

TEST_F(Translation, GermanIsShownWhereItIsAskedFor) {
  EXPECT_EQ(installTranslation({"de"}), "de");
  EXPECT_EQ(shown("MainWindow", "Settings"), "Einstellungen");
}

TEST_F(Translation, CountryWithoutACatalogueOfItsOwnHasItsLanguages) {
  EXPECT_EQ(installTranslation({"de_AT"}), "de");
  EXPECT_EQ(shown("MainWindow", "Settings"), "Einstellungen");
}

TEST_F(Translation, LanguageWithoutACatalogueLeavesThePlaceToTheNext) {
  EXPECT_EQ(installTranslation({"tlh", "de", "en"}), "de");
}

TEST_F(Translation, EnglishBeforeGermanIsEnglish) {
  EXPECT_EQ(installTranslation({"en_GB", "de"}), "en");
  EXPECT_EQ(shown("MainWindow", "Settings"), "Settings");
}

TEST_F(Translation, UnknownLanguageIsEnglishWithItsPluralForms) {
  EXPECT_EQ(installTranslation({"tlh"}), "en");
  EXPECT_EQ(countedApps(1), "1 app");
}

TEST_F(Translation, NoLanguageIsEnglish) {
  installTranslation({"de"});
  EXPECT_EQ(installTranslation({}), "en");
  EXPECT_EQ(shown("MainWindow", "Settings"), "Settings");
}

TEST_F(Translation, EnglishHasAnSForEverythingButOne) {
  installTranslation({});
  EXPECT_EQ(countedApps(0), "0 apps");
  EXPECT_EQ(countedApps(1), "1 app");
  EXPECT_EQ(countedApps(2), "2 apps");
  EXPECT_EQ(countedApps(21), "21 apps");
  EXPECT_EQ(shown("quillmere::TabListModel", "%n tabs open", 1), "1 tab open");
  EXPECT_EQ(shown("quillmere::TabListModel", "%n tabs open", 11), "11 tabs open");
  EXPECT_EQ(shown("quillmere::MixerCanvasPresenter", "%n apps connected.", 0), "0 apps connected.");
  EXPECT_EQ(shown("quillmere::FocusCanvasPresenter", "Start %n-minute focus", 25), "Start 25-minute focus");
}

TEST_F(Translation, GermanHasItsOwnPluralForms) {
  installTranslation({"de"});
  EXPECT_EQ(countedApps(0), "0 Apps");
  EXPECT_EQ(countedApps(1), "1 App");
  EXPECT_EQ(countedApps(21), "21 Apps");
  EXPECT_EQ(shown("quillmere::MainWindowPresenter", "%n sources active", 1), "1 Quelle aktiv");
  EXPECT_EQ(shown("quillmere::MainWindowPresenter", "%n sources active", 3), "3 Quellen aktiv");
  EXPECT_EQ(shown("quillmere::FocusCanvasPresenter", "Start %n-minute focus", 25), "25 Minuten Fokus starten");
}

TEST_F(Translation, PercentagesAreWrittenAsTheLanguageWritesThem) {
  EXPECT_EQ(percentText(0.399F), "39%");
  installTranslation({"de"});
  EXPECT_EQ(percentText(0.399F), QStringLiteral("39\u00a0%"));
}

TEST_F(Translation, ToolkitsOwnTextsComeInTheSameLanguage) {
  if (!QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + QStringLiteral("/qtbase_de.qm"))) {
    GTEST_SKIP() << "the toolkit's own catalogues are not installed";
  }
  installTranslation({"de_CH"});
  EXPECT_EQ(shown("QPlatformTheme", "Cancel"), "Abbrechen");
  installTranslation({});
  EXPECT_EQ(shown("QPlatformTheme", "Cancel"), "Cancel");
}

}  // namespace
}  // namespace quillmere
