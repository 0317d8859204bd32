// Stands for <Foundation/NSError.h>
#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

typedef NSString* NSErrorDomain;

@interface NSError : NSObject <NSCopying, NSSecureCoding>
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSDictionary<NSString*, id>* userInfo;
@property(readonly, copy) NSString* localizedDescription;
@end

#pragma clang assume_nonnull end
