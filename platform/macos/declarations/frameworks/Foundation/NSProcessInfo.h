// Stands for <Foundation/NSProcessInfo.h>
#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
  NSActivityIdleSystemSleepDisabled = 1ULL << 20,
  NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
  NSActivityUserInitiatedAllowingIdleSystemSleep = NSActivityUserInitiated & ~NSActivityIdleSystemSleepDisabled,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSTimeInterval systemUptime;
@property(readonly) int processIdentifier;
@property(readonly, copy) NSString* processName;
@property(readonly, copy) NSString* globallyUniqueString;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

#pragma clang assume_nonnull end
