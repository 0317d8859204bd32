// Stands for <Foundation/NSURL.h>
#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSURL : NSObject <NSCopying, NSSecureCoding>
@property(nullable, readonly, copy) NSString* path;
@property(nullable, readonly, copy) NSString* pathExtension;
@property(nullable, readonly, copy) NSString* scheme;
+ (nullable instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)component;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory;
@end

#pragma clang assume_nonnull end
