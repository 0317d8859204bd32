// Stands for <Foundation/NSPathUtilities.h>
#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) { NSApplicationDirectory = 1 };
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1 };

extern "C" NSString* NSTemporaryDirectory(void);

#pragma clang assume_nonnull end
