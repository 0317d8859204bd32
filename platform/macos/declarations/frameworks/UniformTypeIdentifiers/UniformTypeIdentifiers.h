// Stands for <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#pragma once

#import <UniformTypeIdentifiers/UTCoreTypes.h>
#import <UniformTypeIdentifiers/UTType.h>
