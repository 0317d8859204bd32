// Stands for <AppKit/NSFontDescriptor.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef CGFloat NSFontWeight;

extern "C" const NSFontWeight NSFontWeightLight;
extern "C" const NSFontWeight NSFontWeightRegular;
extern "C" const NSFontWeight NSFontWeightMedium;
extern "C" const NSFontWeight NSFontWeightSemibold;
extern "C" const NSFontWeight NSFontWeightBold;

#pragma clang assume_nonnull end
