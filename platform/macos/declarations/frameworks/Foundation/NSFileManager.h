// Stands for <Foundation/NSFileManager.h>
#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSError.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (BOOL)createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)createIntermediates
                     attributes:(nullable NSDictionary<NSString*, id>*)attributes
                          error:(NSError* _Nullable* _Nullable)error;
- (BOOL)copyItemAtPath:(NSString*)source toPath:(NSString*)target error:(NSError* _Nullable* _Nullable)error;
- (BOOL)removeItemAtPath:(NSString*)path error:(NSError* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
