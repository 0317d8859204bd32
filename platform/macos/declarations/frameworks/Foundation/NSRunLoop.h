// Stands for <Foundation/NSRunLoop.h>
#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

typedef NSString* NSRunLoopMode;
extern "C" NSRunLoopMode const NSDefaultRunLoopMode;

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop;
@property(class, readonly, strong) NSRunLoop* currentRunLoop;
- (BOOL)runMode:(NSRunLoopMode)mode beforeDate:(NSDate*)limit;
@end

#pragma clang assume_nonnull end
