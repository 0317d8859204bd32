// Stands for <AppKit/NSWindow.h>
#pragma once

#import <AppKit/NSResponder.h>
#import <AppKit/NSUserInterfaceItemIdentification.h>

#pragma clang assume_nonnull begin

extern "C" NSNotificationName const NSWindowDidBecomeKeyNotification;
extern "C" NSNotificationName const NSWindowWillCloseNotification;

@class NSColor;

typedef NS_ENUM(NSInteger, NSWindowTitleVisibility) { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };

@interface NSWindow : NSResponder
@property NSWindowTitleVisibility titleVisibility;
@property BOOL titlebarAppearsTransparent;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(nullable, copy) NSUserInterfaceItemIdentifier identifier;
@property(readonly, getter=isVisible) BOOL visible;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)makeKeyWindow;
@end

#pragma clang assume_nonnull end
