// Stands for <AppKit/NSSound.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSSoundName;

@interface NSSound : NSObject <NSCopying>
+ (nullable NSSound*)soundNamed:(NSSoundName)name;
- (BOOL)play;
@end

#pragma clang assume_nonnull end
