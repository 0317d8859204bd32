// Stands for <AppKit/NSStatusBar.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

static const CGFloat NSVariableStatusItemLength = -1.0;

@class NSStatusItem;

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

#pragma clang assume_nonnull end
