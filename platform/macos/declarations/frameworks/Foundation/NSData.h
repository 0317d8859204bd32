// Stands for <Foundation/NSData.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@interface NSData : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end

@interface NSMutableData : NSData
+ (instancetype)data;
- (void)appendData:(NSData*)other;
@end

#pragma clang assume_nonnull end
