// Stands for <CoreFoundation/CFURL.h>
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL* CFURLRef;

#pragma clang assume_nonnull end
}
