// Stands for <AppKit/NSView.h>
#pragma once

#import <AppKit/NSResponder.h>

#pragma clang assume_nonnull begin

@class NSWindow;

@interface NSView : NSResponder
@property(nullable, readonly, assign) NSWindow* window;
@property NSRect bounds;
@property(readonly, getter=isFlipped) BOOL flipped;
@property(nullable, copy) NSString* toolTip;
- (instancetype)initWithFrame:(NSRect)frame;
@end

#pragma clang assume_nonnull end
