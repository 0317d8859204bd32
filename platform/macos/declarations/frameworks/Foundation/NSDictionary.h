// Stands for <Foundation/NSDictionary.h>
#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

#pragma clang assume_nonnull begin

@class NSArray<ObjectType>;
@class NSError;
@class NSURL;

@interface NSDictionary<__covariant KeyType, __covariant ObjectType>
    : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
@property(readonly) NSUInteger count;
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
- (nullable ObjectType)objectForKey:(KeyType)key;
- (BOOL)writeToURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)error;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
- (void)setObject:(ObjectType)object forKey:(KeyType<NSCopying>)key;
- (void)setObject:(nullable ObjectType)object forKeyedSubscript:(KeyType<NSCopying>)key;
@end

#pragma clang assume_nonnull end
