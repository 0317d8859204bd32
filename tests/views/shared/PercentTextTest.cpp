// Gains as people read them.
#include "views/shared/PercentText.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillmere {
namespace {

TEST(PercentText, IsTruncated) {
  EXPECT_EQ(percentText(0.999F), "99%");
  EXPECT_EQ(percentText(1.0F), "100%");
  EXPECT_EQ(percentText(0.0F), "0%");
}

TEST(PercentText, OfNoNumberIsZero) { EXPECT_EQ(percentText(std::numeric_limits<float>::quiet_NaN()), "0%"); }

}  // namespace
}  // namespace quillmere
