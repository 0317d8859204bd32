// Stands for <AppKit/NSMenu.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSMenuItem;

@interface NSMenu : NSObject
@property BOOL autoenablesItems;
- (instancetype)initWithTitle:(NSString*)title;
- (void)addItem:(NSMenuItem*)item;
@end

#pragma clang assume_nonnull end
