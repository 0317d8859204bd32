// Stands for <Foundation/NSOperation.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

#pragma clang assume_nonnull end
