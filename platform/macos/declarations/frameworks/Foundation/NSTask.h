// Stands for <Foundation/NSTask.h>
#pragma once

#import <Foundation/NSError.h>
#import <Foundation/NSURL.h>

#pragma clang assume_nonnull begin

@interface NSTask : NSObject
@property(nullable, copy) NSURL* executableURL;
@property(nullable, strong) id standardInput;
- (BOOL)launchAndReturnError:(NSError* _Nullable* _Nullable)error;
- (void)waitUntilExit;
@end

#pragma clang assume_nonnull end
