// Where the system's settings are opened.
#include "platform/macos/pure/SettingsAddress.h"

#include <gtest/gtest.h>

namespace quillmere::macos {
namespace {

TEST(SettingsAddress, IsThePaneOfPrivacyAndThenTheListByItsName) {
  EXPECT_EQ(settingsAddress("Privacy_Accessibility"),
            "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
  EXPECT_EQ(settingsAddress("Privacy_FocusStatus"),
            "x-apple.systempreferences:com.apple.preference.security?Privacy_FocusStatus");
}

}  // namespace
}  // namespace quillmere::macos
