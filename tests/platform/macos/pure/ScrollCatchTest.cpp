// The order of the questions that a scroll answers before somebody may use it up.
#include "platform/macos/pure/ScrollCatch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillmere::macos {
namespace {

class CaughtScroll : public ::testing::Test {
 protected:
  ScrollCatch listener() {
    ScrollCatch made;
    made.window = [this] { return own; };
    made.isActive = [this] {
      asked.emplace_back("active");
      return isActive;
    };
    made.onScroll = [this](double delta) {
      asked.push_back("scroll " + std::to_string(delta));
      return isUsed;
    };
    return made;
  }

  int one = 0;
  int two = 0;
  const void* own = &one;
  bool isActive = true;
  bool isUsed = true;
  std::vector<std::string> asked;
};

TEST_F(CaughtScroll, IsUsedUpByWhoTakesIt) {
  EXPECT_TRUE(takesScroll(listener(), &one, -2.5));
  EXPECT_EQ(asked, (std::vector<std::string>{"active", "scroll -2.500000"}));
}

TEST_F(CaughtScroll, GoesOnWhereItWasNotUsed) {
  isUsed = false;
  EXPECT_FALSE(takesScroll(listener(), &one, 1));
  EXPECT_EQ(asked.size(), 2U);
}

TEST_F(CaughtScroll, GoesOnWhereThePointerLiesElsewhere) {
  isActive = false;
  EXPECT_FALSE(takesScroll(listener(), &one, 1));
  EXPECT_EQ(asked, std::vector<std::string>{"active"});
}

TEST_F(CaughtScroll, OfAnotherWindowIsNobodysHere) {
  EXPECT_FALSE(takesScroll(listener(), &two, 1));
  EXPECT_TRUE(asked.empty());
}

TEST_F(CaughtScroll, OfNoWindowIsNobodysHere) {
  EXPECT_FALSE(takesScroll(listener(), nullptr, 1));
  own = nullptr;
  EXPECT_FALSE(takesScroll(listener(), nullptr, 1)) << "nothing is not the same as nothing";
  EXPECT_FALSE(takesScroll(listener(), &one, 1));
  EXPECT_TRUE(asked.empty());
}

}  // namespace
}  // namespace quillmere::macos
