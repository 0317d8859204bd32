// Stands for <Foundation/NSObject.h>
#pragma once

#import <Foundation/NSObjCRuntime.h>

#pragma clang assume_nonnull begin

typedef struct _NSZone NSZone;

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end

@protocol NSSecureCoding
@end

#pragma clang assume_nonnull end
