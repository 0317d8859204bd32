// Stands for <Foundation/NSDate.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

typedef double NSTimeInterval;

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSTimeInterval timeIntervalSinceReferenceDate;
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)seconds;
@end

#pragma clang assume_nonnull end
