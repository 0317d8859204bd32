// Stands for <ApplicationServices/ApplicationServices.h>, and what it has of accessibility
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {
#pragma clang assume_nonnull begin

extern const CFStringRef kAXTrustedCheckOptionPrompt;
Boolean AXIsProcessTrusted(void);
Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef _Nullable options);

#pragma clang assume_nonnull end
}
