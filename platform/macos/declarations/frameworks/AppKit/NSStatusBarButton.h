// Stands for <AppKit/NSStatusBarButton.h>
#pragma once

#import <AppKit/NSButton.h>

#pragma clang assume_nonnull begin

@interface NSStatusBarButton : NSButton
@end

#pragma clang assume_nonnull end
