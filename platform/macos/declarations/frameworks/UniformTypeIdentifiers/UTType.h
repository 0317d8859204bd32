// Stands for <UniformTypeIdentifiers/UTType.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface UTType : NSObject <NSCopying, NSSecureCoding>
@end

#pragma clang assume_nonnull end
