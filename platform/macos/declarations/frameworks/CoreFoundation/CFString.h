// Stands for <CoreFoundation/CFString.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef UInt32 CFStringEncoding;
enum : CFStringEncoding { kCFStringEncodingUTF8 = 0x08000100 };

// The compiler makes one of a literal.
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))

CFTypeID CFStringGetTypeID(void);
CFStringRef _Nullable CFStringCreateWithCString(CFAllocatorRef _Nullable allocator, const char* text,
                                                CFStringEncoding encoding) CF_RETURNS_RETAINED;

#pragma clang assume_nonnull end
}
