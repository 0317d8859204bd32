// Stands for <objc/NSObject.h>
#pragma once

#import <objc/objc.h>
#import <stddef.h>

#pragma clang assume_nonnull begin

typedef long NSInteger;
typedef unsigned long NSUInteger;

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
@property(readonly) Class superclass;
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol*)aProtocol;
- (BOOL)respondsToSelector:(SEL)aSelector;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
- (id)mutableCopy;
+ (Class)class;
@end

#pragma clang assume_nonnull end
