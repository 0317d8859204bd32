// Stands for <AppKit/NSResponder.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface NSResponder : NSObject
@end

#pragma clang assume_nonnull end
