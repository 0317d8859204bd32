// Stands for <AppKit/NSButton.h>
#pragma once

#import <AppKit/NSControl.h>

#pragma clang assume_nonnull begin

@class NSImage;

@interface NSButton : NSControl
@property(nullable, strong) NSImage* image;
@end

#pragma clang assume_nonnull end
