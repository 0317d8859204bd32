// Stands for <AppKit/NSViewController.h>
#pragma once

#import <AppKit/NSView.h>

#pragma clang assume_nonnull begin

@interface NSViewController : NSResponder
@property(strong) NSView* view;
@property NSSize preferredContentSize;
- (instancetype)initWithNibName:(nullable NSString*)name bundle:(nullable NSBundle*)bundle;
@end

#pragma clang assume_nonnull end
