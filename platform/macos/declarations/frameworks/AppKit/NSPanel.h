// Stands for <AppKit/NSPanel.h>
#pragma once

#import <AppKit/NSWindow.h>

#pragma clang assume_nonnull begin

@interface NSPanel : NSWindow
@end

#pragma clang assume_nonnull end
