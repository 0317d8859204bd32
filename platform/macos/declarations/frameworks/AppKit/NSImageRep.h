// Stands for <AppKit/NSImageRep.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSImageRep : NSObject
@end

#pragma clang assume_nonnull end
