// Stands for <CoreFoundation/CFURL.h>
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef const struct CF_BRIDGED_TYPE(NSURL) __CFURL* CFURLRef;
typedef CF_ENUM(CFIndex, CFURLPathStyle) { kCFURLPOSIXPathStyle = 0 };

CFURLRef _Nullable CFURLCreateWithFileSystemPath(CFAllocatorRef _Nullable allocator, CFStringRef _Nullable path,
                                                 CFURLPathStyle style, Boolean isDirectory) CF_RETURNS_RETAINED;

#pragma clang assume_nonnull end
}
