// Stands for <Foundation/NSUUID.h>
#pragma once

#import <Foundation/NSObject.h>
#include <sys/types.h>

#pragma clang assume_nonnull begin

@class NSString;

@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
- (instancetype)initWithUUIDBytes:(const uuid_t _Nonnull)bytes;
@end

#pragma clang assume_nonnull end
