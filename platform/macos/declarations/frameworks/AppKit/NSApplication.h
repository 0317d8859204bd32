// Stands for <AppKit/NSApplication.h>
#pragma once

#import <AppKit/NSResponder.h>
#import <AppKit/NSRunningApplication.h>

#pragma clang assume_nonnull begin

@class NSApplication;
@class NSEvent;
@class NSWindow;

extern "C" __kindof NSApplication* _Null_unspecified NSApp;

@interface NSApplication : NSResponder
@property(readonly, copy) NSArray<NSWindow*>* windows;
@property(nullable, readonly, strong) NSEvent* currentEvent;
- (NSApplicationActivationPolicy)activationPolicy;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)activateIgnoringOtherApps:(BOOL)ignores;
- (void)terminate:(nullable id)sender;
@end

@interface NSApplication (NSStandardAboutPanel)
- (void)orderFrontStandardAboutPanel:(nullable id)sender;
@end

#pragma clang assume_nonnull end
