// Stands for <Foundation/NSFileManager.h>
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSPathUtilities.h>

#pragma clang assume_nonnull begin

@class NSError;
@class NSURL;

typedef NSString* NSURLResourceKey;
typedef NS_OPTIONS(NSUInteger, NSDirectoryEnumerationOptions) { NSDirectoryEnumerationSkipsHiddenFiles = 1 << 2 };

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains;
- (nullable NSArray<NSURL*>*)contentsOfDirectoryAtURL:(NSURL*)url
                           includingPropertiesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                                              options:(NSDirectoryEnumerationOptions)options
                                                error:(NSError* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
