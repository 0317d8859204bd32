// Stands for <Foundation/NSProcessInfo.h>
#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSTimeInterval systemUptime;
@property(readonly) int processIdentifier;
@property(readonly, copy) NSString* processName;
@property(readonly, copy) NSString* globallyUniqueString;
@end

#pragma clang assume_nonnull end
