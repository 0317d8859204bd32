// Stands for <CoreFoundation/CFNumber.h>
#pragma once

#include <CoreFoundation/CFBase.h>

extern "C" {
CFTypeID CFBooleanGetTypeID(void);
}
