// Stands for <Foundation/NSRange.h>
#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

typedef struct _NSRange {
  NSUInteger location;
  NSUInteger length;
} NSRange;

#pragma clang assume_nonnull end
