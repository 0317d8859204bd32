// Stands for <AppKit/NSColor.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* blackColor;
+ (NSColor*)colorWithSRGBRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
- (void)setFill;
@end

#pragma clang assume_nonnull end
