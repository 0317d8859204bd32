// Stands for <Foundation/NSDate.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

typedef double NSTimeInterval;

#pragma clang assume_nonnull end
