// Stands for <AppKit/NSOpenPanel.h>
#pragma once

#import <AppKit/NSSavePanel.h>

#pragma clang assume_nonnull begin

@interface NSOpenPanel : NSSavePanel
@property BOOL canChooseDirectories;
@property BOOL allowsMultipleSelection;
+ (NSOpenPanel*)openPanel;
@end

#pragma clang assume_nonnull end
