// Stands for <AppKit/NSMenuItem.h>
#pragma once

#import <AppKit/NSCell.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSImage;
@class NSMenu;

@interface NSMenuItem : NSObject
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property NSInteger tag;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property(nullable, strong) NSImage* image;
@property(nullable, strong) NSMenu* submenu;
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title action:(nullable SEL)action keyEquivalent:(NSString*)key;
@end

#pragma clang assume_nonnull end
