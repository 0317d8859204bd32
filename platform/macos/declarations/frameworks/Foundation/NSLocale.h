// Stands for <Foundation/NSLocale.h>
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSLocale : NSObject
@property(class, readonly, copy) NSArray<NSString*>* preferredLanguages;
@end

#pragma clang assume_nonnull end
