// Stands for <Foundation/NSError.h>
#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSError : NSObject <NSCopying, NSSecureCoding>
@property(readonly, copy) NSString* localizedDescription;
@end

#pragma clang assume_nonnull end
