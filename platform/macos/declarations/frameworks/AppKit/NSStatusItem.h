// Stands for <AppKit/NSStatusItem.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSMenu;
@class NSStatusBarButton;

@interface NSStatusItem : NSObject
@property(nullable, strong) NSMenu* menu;
@property(nullable, readonly, strong) NSStatusBarButton* button;
@end

#pragma clang assume_nonnull end
