// Stands for <Foundation/NSAppleEventDescriptor.h>
#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSAppleEventDescriptor : NSObject <NSCopying, NSSecureCoding>
@property(nullable, readonly, copy) NSString* stringValue;
@end

#pragma clang assume_nonnull end
