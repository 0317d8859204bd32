// Stands for <Foundation/NSBundle.h>
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>
#import <Foundation/NSURL.h>

#pragma clang assume_nonnull begin

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSURL* privateFrameworksURL;
+ (nullable instancetype)bundleWithURL:(NSURL*)url;
- (nullable Class)classNamed:(NSString*)name;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
- (nullable NSURL*)URLForResource:(nullable NSString*)name withExtension:(nullable NSString*)extension;
@end

#pragma clang assume_nonnull end
