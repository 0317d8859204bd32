// Countdown texts.
#include "core/RemainingText.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillmere {
namespace {

std::string after(double seconds) { return formatRemaining(Date{1000.0 + seconds}, Date{1000.0}); }

TEST(FormatRemaining, WritesMinutesAndTwoDigitsOfSeconds) {
  EXPECT_EQ(after(5 * 60 + 7), "5:07");
  EXPECT_EQ(after(12 * 60 + 34), "12:34");
  EXPECT_EQ(after(5), "0:05");
}

TEST(FormatRemaining, DoesNotCarryMinutesIntoHours) { EXPECT_EQ(after(90 * 60), "90:00"); }

TEST(FormatRemaining, TruncatesFractions) { EXPECT_EQ(after(59.999), "0:59"); }

TEST(FormatRemaining, ADateInThePastReadsZero) {
  EXPECT_EQ(after(-0.5), "0:00");
  EXPECT_EQ(after(-5000), "0:00");
}

TEST(FormatRemaining, AbsurdDatesDoNotOverflow) {
  EXPECT_EQ(after(std::numeric_limits<double>::quiet_NaN()), "0:00");
  EXPECT_EQ(after(std::numeric_limits<double>::infinity()), "16666666666666:40");
}

}  // namespace
}  // namespace quillmere
