// Stands for <CoreGraphics/CGEventTypes.h>
#pragma once

#include <CoreGraphics/CGBase.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef struct CF_BRIDGED_TYPE(id) __CGEvent* CGEventRef;
typedef CF_ENUM(uint32_t, CGEventTapLocation) {
  kCGHIDEventTap = 0,
  kCGSessionEventTap = 1,
  kCGAnnotatedSessionEventTap = 2
};

#pragma clang assume_nonnull end
}
