// Stands for <AppKit/NSGraphicsContext.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSBitmapImageRep;

@interface NSGraphicsContext : NSObject
@property(class, nullable, strong) NSGraphicsContext* currentContext;
+ (nullable NSGraphicsContext*)graphicsContextWithBitmapImageRep:(NSBitmapImageRep*)bitmap;
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

#pragma clang assume_nonnull end
