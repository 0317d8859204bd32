// Stands for <CoreFoundation/CFString.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
#pragma clang assume_nonnull begin

// The compiler makes one of a literal.
#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString("" text ""))

#pragma clang assume_nonnull end
}
