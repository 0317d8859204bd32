// Stands for <CoreGraphics/CGImage.h>
#pragma once

#include <CoreGraphics/CGBase.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef struct CF_BRIDGED_TYPE(id) CGImage* CGImageRef;

#pragma clang assume_nonnull end
}
