// Stands for <AppKit/NSBezierPath.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSBezierPath : NSObject
+ (NSBezierPath*)bezierPathWithOvalInRect:(NSRect)place;
- (void)fill;
@end

#pragma clang assume_nonnull end
