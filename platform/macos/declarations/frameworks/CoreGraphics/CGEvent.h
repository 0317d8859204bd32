// Stands for <CoreGraphics/CGEvent.h>
#pragma once

#include <CoreGraphics/CGEventTypes.h>

extern "C" {
#pragma clang assume_nonnull begin

void CGEventPost(CGEventTapLocation tap, CGEventRef _Nullable event);

#pragma clang assume_nonnull end
}
