// Stands for <Foundation/NSPathUtilities.h>
#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

extern "C" NSString* NSTemporaryDirectory(void);

#pragma clang assume_nonnull end
