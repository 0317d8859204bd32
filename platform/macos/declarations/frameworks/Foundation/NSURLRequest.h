// Stands for <Foundation/NSURLRequest.h>
#pragma once

#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@class NSURL;

@interface NSURLRequest : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURL* URL;
@end

#pragma clang assume_nonnull end
