// Stands for <CoreFoundation/CFRunLoop.h>
#pragma once

#include <CoreFoundation/CFBase.h>

typedef CFStringRef CFRunLoopMode;
typedef double CFTimeInterval;
typedef CF_ENUM(SInt32, CFRunLoopRunResult) {
  kCFRunLoopRunFinished = 1,
  kCFRunLoopRunStopped = 2,
  kCFRunLoopRunTimedOut = 3,
  kCFRunLoopRunHandledSource = 4
};

extern "C" {
extern const CFRunLoopMode _Nonnull kCFRunLoopDefaultMode;
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode _Nonnull mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
}
