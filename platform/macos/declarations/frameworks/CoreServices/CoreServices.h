// Stands for <CoreServices/CoreServices.h>, and what it has of Apple events
#pragma once

#include <CoreFoundation/CoreFoundation.h>

enum : UInt32 {
  kCoreEventClass = 0x61657674,       // aevt
  kAEReopenApplication = 0x72617070,  // rapp
};
