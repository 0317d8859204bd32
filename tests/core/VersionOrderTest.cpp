// Versions compared.
#include "core/VersionOrder.h"

#include <gtest/gtest.h>

namespace quillmere {
namespace {

TEST(IsOutdated, ComparesNumbersNotTexts) { EXPECT_TRUE(isOutdated("1.9", "1.10")); }
TEST(IsOutdated, MissingPositionsCountAsZero) {
  EXPECT_FALSE(isOutdated("1.2", "1.2.0"));
  EXPECT_FALSE(isOutdated("1.2.0", "1.2"));
  EXPECT_TRUE(isOutdated("1.2", "1.2.1"));
}
TEST(IsOutdated, EqualAndNewerAreNot) {
  EXPECT_FALSE(isOutdated("2.0", "2.0"));
  EXPECT_FALSE(isOutdated("2.1", "2.0.9"));
}
TEST(IsOutdated, UnreadablePartsAreLeftOutAndTheRestMovesUp) {
  EXPECT_TRUE(isOutdated("1.x.2", "1.3"));
  EXPECT_FALSE(isOutdated("1..2", "1.2"));
}
TEST(IsOutdated, AnUnreadableVersionComparesAsZeros) {
  EXPECT_FALSE(isOutdated("1.0", "soon"));
  EXPECT_FALSE(isOutdated("0.0.0", "soon"));
}

}  // namespace
}  // namespace quillmere
