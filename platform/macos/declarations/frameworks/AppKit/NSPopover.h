// Stands for <AppKit/NSPopover.h>
#pragma once

#import <AppKit/NSResponder.h>

#pragma clang assume_nonnull begin

@class NSView;
@class NSViewController;

typedef NS_ENUM(NSInteger, NSPopoverBehavior) {
  NSPopoverBehaviorApplicationDefined = 0,
  NSPopoverBehaviorTransient = 1,
  NSPopoverBehaviorSemitransient = 2,
};

@protocol NSPopoverDelegate <NSObject>
@optional
- (void)popoverWillClose:(NSNotification*)notification;
- (void)popoverDidClose:(NSNotification*)notification;
@end

@interface NSPopover : NSResponder
@property(nullable, weak) id<NSPopoverDelegate> delegate;
@property NSPopoverBehavior behavior;
@property BOOL animates;
@property(nullable, strong) NSViewController* contentViewController;
@property(readonly, getter=isShown) BOOL shown;
- (void)showRelativeToRect:(NSRect)place ofView:(NSView*)view preferredEdge:(NSRectEdge)edge;
- (void)performClose:(nullable id)sender;
- (void)close;
@end

#pragma clang assume_nonnull end
