// The C library's reader says what the C++ library's own says, so that hosts without the latter read the same settings.
#include "core/detail/NearestNumber.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

namespace quillmere::detail {
namespace {

const char* const numbers[] = {"0",
                               "-0",
                               "-0.0",
                               "1",
                               "0.3",
                               "0.1",
                               "-0.25",
                               "1e-3",
                               "1E+2",
                               "16777217",
                               "1.00000005960464477540",
                               "3.4028234e38",
                               "3.4028236e38",
                               "1e39",
                               "-1e39",
                               "1e-40",
                               "-1e-45",
                               "1e-46",
                               "-1e-60",
                               "1.7976931348623157e308",
                               "4.9e-324",
                               "2.2250738585072011e-308",
                               "1e-400",
                               "-1e-400",
                               "774000000.123456",
                               "123456789012345678901234567890123456789012345678901234567890.5"};

TEST(NearestNumber, OfTheCLibraryIsTheSameToTheLastBit) {
  for (const std::string text : numbers) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(nearestNumber<float>(text)),
              std::bit_cast<std::uint32_t>(nearestNumberOfC<float>(text)))
        << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(nearestNumber<double>(text)),
              std::bit_cast<std::uint64_t>(nearestNumberOfC<double>(text)))
        << text;
  }
}

TEST(NearestNumber, TooLargeIsInfiniteAndTooSmallIsZeroWithItsSign) {
  EXPECT_EQ(nearestNumber<float>("1e39"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(nearestNumber<float>("-1e39"), -std::numeric_limits<float>::infinity());
  EXPECT_EQ(nearestNumber<double>("1e400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(nearestNumber<float>("-1e-60"), 0.0F);
  EXPECT_TRUE(std::signbit(nearestNumber<float>("-1e-60")));
  EXPECT_FALSE(std::signbit(nearestNumber<double>("1e-400")));
}

TEST(NearestNumber, OfTheCLibraryHasAPointWhateverTheLocaleHas) {
#ifdef QUILLMERE_TEST_LOCALES
  ::setenv("LOCPATH", QUILLMERE_TEST_LOCALES, 1);
#endif
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  const char* const with_comma = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  if (with_comma == nullptr) GTEST_SKIP() << "no German locale here";
  EXPECT_EQ(nearestNumberOfC<double>("0.25"), 0.25);
  EXPECT_EQ(nearestNumberOfC<float>("-1.5e2"), -150.0F);
  std::setlocale(LC_NUMERIC, before.c_str());
}

}  // namespace
}  // namespace quillmere::detail
