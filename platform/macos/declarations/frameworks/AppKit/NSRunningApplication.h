// Stands for <AppKit/NSRunningApplication.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSImage;

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) { NSApplicationActivateAllWindows = 1 << 0 };
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
  NSApplicationActivationPolicyAccessory = 1,
  NSApplicationActivationPolicyProhibited = 2,
};

@interface NSRunningApplication : NSObject
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSString* localizedName;
@property(nullable, readonly, strong) NSImage* icon;
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@property(readonly) pid_t processIdentifier;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

#pragma clang assume_nonnull end
