// Stands for <AppKit/NSAccessibility.h>
#pragma once

#import <AppKit/NSWorkspace.h>

#pragma clang assume_nonnull begin

extern "C" NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;

@interface NSWorkspace (NSWorkspaceAccessibilityDisplay)
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@property(readonly) BOOL accessibilityDisplayShouldIncreaseContrast;
@end

#pragma clang assume_nonnull end
