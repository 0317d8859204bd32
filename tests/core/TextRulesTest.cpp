// Percentages, parent keys and the order of names.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/BundleID.h"
#include "core/Percent.h"
#include "core/TextOrder.h"

namespace quillmere {
namespace {

TEST(PercentOf, TruncatesAndNeverRounds) {
  EXPECT_EQ(percentOf(0.999F), 99);
  EXPECT_EQ(percentOf(0.5F), 50);
  EXPECT_EQ(percentOf(0.0F), 0);
  EXPECT_EQ(percentOf(1.0F), 100);
  EXPECT_EQ(percentOf(-0.999F), -99);
}

TEST(PercentOf, IsTheProductInSinglePrecision) {
  // In double precision 0.29f times 100 is 28.9999991 and would read 28.
  EXPECT_EQ(percentOf(0.29F), static_cast<int>(0.29F * 100.0F));
  EXPECT_EQ(percentOf(0.29F), 29);
  EXPECT_EQ(percentOf(0.57F), static_cast<int>(0.57F * 100.0F));
  for (int step = 0; step <= 1000; ++step) {
    const float gain = static_cast<float>(step) / 1000.0F;
    EXPECT_EQ(percentOf(gain), static_cast<int>(gain * 100.0F)) << step;
  }
}

TEST(PercentOf, AbsurdGainsHaveAResult) {
  EXPECT_EQ(percentOf(std::numeric_limits<float>::quiet_NaN()), 0);
  EXPECT_EQ(percentOf(std::numeric_limits<float>::infinity()), std::numeric_limits<int>::max());
  EXPECT_EQ(percentOf(-std::numeric_limits<float>::infinity()), std::numeric_limits<int>::min());
  EXPECT_EQ(percentOf(3e38F), std::numeric_limits<int>::max());
  EXPECT_EQ(percentOf(7.0F), 700);
  EXPECT_EQ(percentOf(-1.0F), -100);
}

TEST(ParentKey, CutsBeforeTheFirstHelper) {
  EXPECT_EQ(parentKey("com.google.Chrome.helper"), "com.google.Chrome");
  EXPECT_EQ(parentKey("com.google.Chrome.helper.renderer"), "com.google.Chrome");
  EXPECT_EQ(parentKey("a.helper.b.helper"), "a");
}

TEST(ParentKey, IgnoresCase) {
  EXPECT_EQ(parentKey("com.tinyspeck.slackmacgap.Helper"), "com.tinyspeck.slackmacgap");
  EXPECT_EQ(parentKey("a.HELPERS"), "a");
}

TEST(ParentKey, AnIdentifierWithoutHelperIsItsOwnKey) {
  EXPECT_EQ(parentKey("com.spotify.client"), "com.spotify.client");
  EXPECT_EQ(parentKey("helper.tool"), "helper.tool");
  EXPECT_EQ(parentKey("a.helpe"), "a.helpe");
  EXPECT_EQ(parentKey(""), "");
}

TEST(ParentKey, AnIdentifierThatStartsWithHelperLeavesNothing) { EXPECT_EQ(parentKey(".helper.x"), ""); }

int sign(int value) { return (value > 0) - (value < 0); }

TEST(CompareNames, IgnoresCase) {
  EXPECT_EQ(compareNames("Spotify", "sPOTIFY"), 0);
  EXPECT_EQ(compareNames("ÉCOUTE", "écoute"), 0);
  EXPECT_LT(compareNames("alpha", "Beta"), 0);
  EXPECT_GT(compareNames("beta", "Alpha"), 0);
}

TEST(CompareNames, AShorterNameComesFirst) {
  EXPECT_LT(compareNames("", "a"), 0);
  EXPECT_LT(compareNames("Mail", "Mailspring"), 0);
  EXPECT_EQ(compareNames("", ""), 0);
}

TEST(CompareNames, NamesThatDifferInMoreThanCaseAreNotEqual) {
  EXPECT_NE(compareNames("a-b", "ab"), 0);
  EXPECT_NE(compareNames("a", "a\u200B"), 0);
  EXPECT_NE(compareNames("e", "é"), 0);
  EXPECT_NE(compareNames(std::string("a\0b", 3), std::string("a\0c", 3)), 0);
}

TEST(CompareNames, EqualNamesKeepTheirOrderInAStableSort) {
  std::vector<std::string> names{"zoom", "Spotify", "SPOTIFY", "spotify", "Amarok"};
  std::stable_sort(names.begin(), names.end(),
                   [](const auto& left, const auto& right) { return compareNames(left, right) < 0; });
  EXPECT_EQ(names, (std::vector<std::string>{"Amarok", "Spotify", "SPOTIFY", "spotify", "zoom"}));
}

TEST(CompareNames, BrokenTextKeepsItsPlaceBehindTheOthers) {
  EXPECT_GT(compareNames("\xFF", "zoom"), 0);
  EXPECT_GT(compareNames("a\x80", "az"), 0);
  EXPECT_NE(compareNames("\xC3", "\xC4"), 0);
  EXPECT_EQ(compareNames("\xFF", "\xFF"), 0);
  // Overlong, surrogate and cut-off forms are broken too, each in its own way.
  EXPECT_NE(compareNames("\xC0\xAF", "/"), 0);
  EXPECT_NE(compareNames("\xED\xA0\x80", "\xED\xA0\x81"), 0);
  EXPECT_NE(compareNames("\xF0\x9F\x98", "\xF0\x9F\x98\x80"), 0);
}

TEST(CompareNames, IsATotalOrderOverWhateverBytes) {
  constexpr unsigned seed = 20261121;
  std::mt19937 random(seed);
  const std::vector<std::string> pieces{"a", "A",    "b",    "Z",    "é",  "É",  "ß", "-",
                                        " ", "\xFF", "\xC3", "\x80", "漢", "😀", "ı", "İ"};
  std::vector<std::string> names(60);
  for (auto& name : names) {
    for (auto length = random() % 4; length > 0; --length) name += pieces[random() % pieces.size()];
  }
  for (const auto& a : names) {
    EXPECT_EQ(compareNames(a, a), 0);
    for (const auto& b : names) {
      EXPECT_EQ(sign(compareNames(a, b)), -sign(compareNames(b, a))) << a << " | " << b << " seed " << seed;
      for (const auto& c : names) {
        if (compareNames(a, b) <= 0 && compareNames(b, c) <= 0) {
          EXPECT_LE(compareNames(a, c), 0) << a << " | " << b << " | " << c << " seed " << seed;
        }
      }
    }
  }
}

}  // namespace
}  // namespace quillmere
