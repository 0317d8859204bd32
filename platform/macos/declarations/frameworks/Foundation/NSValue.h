// Stands for <Foundation/NSValue.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@interface NSValue : NSObject <NSCopying, NSSecureCoding>
@property(readonly) const char* objCType;
@end

@interface NSNumber : NSValue
@property(readonly) BOOL boolValue;
@property(readonly) int intValue;
@property(readonly) unsigned int unsignedIntValue;
@property(readonly) long long longLongValue;
@property(readonly) double doubleValue;
@property(readonly) NSInteger integerValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
@end

#pragma clang assume_nonnull end
