// Stands for <UniformTypeIdentifiers/UTCoreTypes.h>
#pragma once

#import <UniformTypeIdentifiers/UTType.h>

#pragma clang assume_nonnull begin

extern "C" UTType* const UTTypeApplication;

#pragma clang assume_nonnull end
