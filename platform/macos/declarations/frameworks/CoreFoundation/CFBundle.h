// Stands for <CoreFoundation/CFBundle.h>
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFURL.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef struct CF_BRIDGED_TYPE(id) __CFBundle* CFBundleRef;

CFBundleRef _Nullable CFBundleCreate(CFAllocatorRef _Nullable allocator, CFURLRef _Nullable url) CF_RETURNS_RETAINED;
void* _Nullable CFBundleGetFunctionPointerForName(CFBundleRef _Nullable bundle, CFStringRef _Nullable name);

#pragma clang assume_nonnull end
}
