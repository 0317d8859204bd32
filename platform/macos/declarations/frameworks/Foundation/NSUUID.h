// Stands for <Foundation/NSUUID.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@class NSString;

@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
@property(readonly, copy) NSString* UUIDString;
- (nullable instancetype)initWithUUIDString:(NSString*)string;
@end

#pragma clang assume_nonnull end
