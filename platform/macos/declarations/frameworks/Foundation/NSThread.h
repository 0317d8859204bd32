// Stands for <Foundation/NSThread.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

#pragma clang assume_nonnull end
