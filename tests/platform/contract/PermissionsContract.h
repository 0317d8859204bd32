// What every answer to the permissions port must do, written once and run on each of them.
// A host offers `Permissions& permissions()`, `void grant()`, which makes the system grant both, and
// `bool becomes(condition)`, which lets the main loop run until the condition holds.
#pragma once

#include <gtest/gtest.h>

#include "platform/Permissions.h"

namespace quillmere {

template <typename Host>
class PermissionsContract : public ::testing::Test {
 protected:
  Host host_;
};

TYPED_TEST_SUITE_P(PermissionsContract);

TYPED_TEST_P(PermissionsContract, NothingIsGrantedWhereTheSystemSaysNothing) {
  EXPECT_FALSE(this->host_.permissions().isProcessTrusted());
  EXPECT_EQ(this->host_.permissions().focusAuthorization(), static_cast<int>(FocusAuthorization::notDetermined));
}

TYPED_TEST_P(PermissionsContract, WhatIsGrantedIsReadBeforeLong) {
  auto& permissions = this->host_.permissions();
  this->host_.grant();
  EXPECT_TRUE(this->host_.becomes([&] {
    return permissions.isProcessTrusted() &&
           permissions.focusAuthorization() == static_cast<int>(FocusAuthorization::authorized);
  }));
}

TYPED_TEST_P(PermissionsContract, AnAnchorThatNobodyKnowsOpensNothingOrSomethingButStopsNobody) {
  static_cast<void>(this->host_.permissions().openSettings("Privacy_Nothing"));
  static_cast<void>(this->host_.permissions().openSettings(""));
}

REGISTER_TYPED_TEST_SUITE_P(PermissionsContract, NothingIsGrantedWhereTheSystemSaysNothing,
                            WhatIsGrantedIsReadBeforeLong,
                            AnAnchorThatNobodyKnowsOpensNothingOrSomethingButStopsNobody);

}  // namespace quillmere
