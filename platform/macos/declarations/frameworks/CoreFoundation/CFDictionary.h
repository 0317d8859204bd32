// Stands for <CoreFoundation/CFDictionary.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef const struct CF_BRIDGED_TYPE(NSDictionary) __CFDictionary* CFDictionaryRef;

#pragma clang assume_nonnull end
}
