// From the system's names of languages to those of the catalogues.
#include "platform/macos/pure/LanguageTags.h"

#include <gtest/gtest.h>

namespace quillmere::macos {
namespace {

TEST(LanguageTags, AreTheLanguageAndTheCountry) {
  EXPECT_EQ(localeName("de-AT"), "de_AT");
  EXPECT_EQ(localeName("es-419"), "es_419");
}

TEST(LanguageTags, MayBeTheLanguageAlone) {
  EXPECT_EQ(localeName("en"), "en");
  EXPECT_EQ(localeName(""), "");
}

TEST(LanguageTags, LoseTheirScript) {
  EXPECT_EQ(localeName("zh-Hans-CN"), "zh_CN");
  EXPECT_EQ(localeName("zh-Hant"), "zh");
}

TEST(LanguageTags, LoseWhatComesAfterTheCountry) { EXPECT_EQ(localeName("ca-ES-valencia"), "ca_ES"); }

TEST(LanguageTags, WithNothingBetweenTheirDashesHaveNoCountry) {
  EXPECT_EQ(localeName("de--"), "de");
  EXPECT_EQ(localeName("de-1997"), "de");
}

}  // namespace
}  // namespace quillmere::macos
