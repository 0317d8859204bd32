// Stands for <CoreGraphics/CGBase.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
#pragma clang assume_nonnull begin

typedef double CGFloat;

#pragma clang assume_nonnull end
}
