// A text as a number.
#include "core/DecimalInteger.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillmere {
namespace {

TEST(DecimalInteger, ReadsDigitsWithOneSignOrNone) {
  EXPECT_EQ(decimalInteger("7"), 7);
  EXPECT_EQ(decimalInteger("+7"), 7);
  EXPECT_EQ(decimalInteger("-7"), -7);
  EXPECT_EQ(decimalInteger("-0"), 0);
  EXPECT_EQ(decimalInteger("007"), 7);
}

TEST(DecimalInteger, TheWholeTextMustBeTheNumber) {
  for (const auto* text : {"", "+", "-", "7 ", " 7", "7a", "7.0", "0x7", "1e3", "1_000", "--7", "+-7", "-+7", "++7"}) {
    EXPECT_EQ(decimalInteger(text), std::nullopt) << text;
  }
}

TEST(DecimalInteger, DigitsOfOtherScriptsAreNone) { EXPECT_EQ(decimalInteger("٣"), std::nullopt); }

TEST(DecimalInteger, ReadsAllOf64BitsAndNoMore) {
  EXPECT_EQ(decimalInteger("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(decimalInteger("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(decimalInteger("9223372036854775808"), std::nullopt);
  EXPECT_EQ(decimalInteger("-9223372036854775809"), std::nullopt);
}

TEST(DecimalInteger, AZeroByteIsNoEnd) { EXPECT_EQ(decimalInteger(std::string_view("7\0", 2)), std::nullopt); }

}  // namespace
}  // namespace quillmere
