// Stands for <Foundation/NSValue.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@interface NSValue : NSObject <NSCopying, NSSecureCoding>
@end

@interface NSNumber : NSValue
@property(readonly) BOOL boolValue;
@property(readonly) long long longLongValue;
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
@end

#pragma clang assume_nonnull end
