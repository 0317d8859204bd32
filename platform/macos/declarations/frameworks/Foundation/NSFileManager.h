// Stands for <Foundation/NSFileManager.h>
#pragma once

#import <Foundation/NSArray.h>
#import <Foundation/NSDictionary.h>
#import <Foundation/NSError.h>
#import <Foundation/NSPathUtilities.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

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
- (BOOL)createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)createIntermediates
                     attributes:(nullable NSDictionary<NSString*, id>*)attributes
                          error:(NSError* _Nullable* _Nullable)error;
- (BOOL)copyItemAtPath:(NSString*)source toPath:(NSString*)target error:(NSError* _Nullable* _Nullable)error;
- (BOOL)removeItemAtPath:(NSString*)path error:(NSError* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
