// Which languages a session asks for.
#include "platform/linux/SessionLanguages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SessionLanguages, LocaleTellsTheLanguageWithItsCountry) {
  EXPECT_THAT(languagesOf("de_AT.UTF-8", ""), ElementsAre("de_AT"));
}

TEST(SessionLanguages, VariantOfALocaleIsNoLanguage) {
  EXPECT_THAT(languagesOf("de_DE@euro", ""), ElementsAre("de_DE"));
}

TEST(SessionLanguages, ListComesBeforeTheLocale) {
  EXPECT_THAT(languagesOf("en_US.UTF-8", "de:en"), ElementsAre("de", "en"));
}

TEST(SessionLanguages, LocaleWithoutALanguageAsksForNoneWhateverTheListSays) {
  EXPECT_THAT(languagesOf("C", "de"), IsEmpty());
  EXPECT_THAT(languagesOf("POSIX", "de"), IsEmpty());
  EXPECT_THAT(languagesOf("C.UTF-8", "de:en"), IsEmpty());
  EXPECT_THAT(languagesOf("", "de"), IsEmpty());
}

TEST(SessionLanguages, EmptyPlacesOfAListAreSkipped) {
  EXPECT_THAT(languagesOf("en_US.UTF-8", ":de::pl:"), ElementsAre("de", "pl"));
}

TEST(SessionLanguages, NothingBehindTheNameOfNoTranslationCounts) {
  EXPECT_THAT(languagesOf("de_DE.UTF-8", "pl:C:de"), ElementsAre("pl"));
}

}  // namespace
}  // namespace quillmere
