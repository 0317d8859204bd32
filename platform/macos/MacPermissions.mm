// Asks the system.
#include "platform/macos/MacPermissions.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>
#import <Intents/Intents.h>

#include <utility>

#include "foundation/Text.h"
#include "platform/macos/pure/SettingsAddress.h"

namespace quillmere {

// The port's numbers are the system's.
static_assert(static_cast<int>(FocusAuthorization::notDetermined) == INFocusStatusAuthorizationStatusNotDetermined);
static_assert(static_cast<int>(FocusAuthorization::restricted) == INFocusStatusAuthorizationStatusRestricted);
static_assert(static_cast<int>(FocusAuthorization::denied) == INFocusStatusAuthorizationStatusDenied);
static_assert(static_cast<int>(FocusAuthorization::authorized) == INFocusStatusAuthorizationStatusAuthorized);

bool MacPermissions::isProcessTrusted() { return AXIsProcessTrusted(); }

void MacPermissions::promptForTrust() {
  NSDictionary* const options __attribute__((objc_precise_lifetime)) =
      @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @YES};
  AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options);
}

int MacPermissions::focusAuthorization() {
  return static_cast<int>(INFocusStatusCenter.defaultCenter.authorizationStatus);
}

void MacPermissions::requestFocusAuthorization(std::function<void()> answered) {
  const auto told = std::move(answered);
  [INFocusStatusCenter.defaultCenter requestAuthorizationWithCompletionHandler:^(INFocusStatusAuthorizationStatus) {
    told();
  }];
}

bool MacPermissions::openSettings(const std::string& anchor) {
  NSURL* address = [NSURL URLWithString:macos::nsString(macos::settingsAddress(anchor))];
  return address != nil && [NSWorkspace.sharedWorkspace openURL:address];
}

}  // namespace quillmere
