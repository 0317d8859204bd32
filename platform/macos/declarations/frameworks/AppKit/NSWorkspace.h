// Stands for <AppKit/NSWorkspace.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSImage;
@class NSRunningApplication;

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
- (BOOL)openURL:(NSURL*)url;
- (nullable NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)identifier;
- (NSImage*)iconForFile:(NSString*)path;
@end

#pragma clang assume_nonnull end
