// What every login item must do, written once and run on each of them.
// A host offers `LoginItem& item()`.
#pragma once

#include <gtest/gtest.h>

#include "platform/LoginItem.h"

namespace quillmere {

template <typename Host>
class LoginItemContract : public ::testing::Test {
 protected:
  Host host_;
};

TYPED_TEST_SUITE_P(LoginItemContract);

TYPED_TEST_P(LoginItemContract, IsNotRegisteredAtFirst) {
  EXPECT_NE(this->host_.item().status(), LoginItemStatus::enabled);
}

TYPED_TEST_P(LoginItemContract, IsEnabledOnceItIsRegistered) {
  EXPECT_EQ(this->host_.item().registerItem(), std::nullopt);
  EXPECT_EQ(this->host_.item().status(), LoginItemStatus::enabled);
}

TYPED_TEST_P(LoginItemContract, RegisteringTwiceIsRegisteringOnce) {
  EXPECT_EQ(this->host_.item().registerItem(), std::nullopt);
  EXPECT_EQ(this->host_.item().registerItem(), std::nullopt);
  EXPECT_EQ(this->host_.item().unregisterItem(), std::nullopt);
  EXPECT_EQ(this->host_.item().status(), LoginItemStatus::notRegistered);
}

TYPED_TEST_P(LoginItemContract, NothingToTakeAwayIsASuccess) {
  EXPECT_EQ(this->host_.item().unregisterItem(), std::nullopt);
  EXPECT_EQ(this->host_.item().status(), LoginItemStatus::notRegistered);
}

REGISTER_TYPED_TEST_SUITE_P(LoginItemContract, IsNotRegisteredAtFirst, IsEnabledOnceItIsRegistered,
                            RegisteringTwiceIsRegisteringOnce, NothingToTakeAwayIsASuccess);

}  // namespace quillmere
