// Stands for <AppKit/NSGraphics.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSColorSpaceName;

extern "C" NSColorSpaceName const NSDeviceRGBColorSpace;

#pragma clang assume_nonnull end
