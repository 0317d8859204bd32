// Stands for <Foundation/NSUserDefaults.h>
#pragma once

#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (void)setBool:(BOOL)value forKey:(NSString*)key;
- (void)setDouble:(double)value forKey:(NSString*)key;
- (void)removeObjectForKey:(NSString*)key;
- (void)removePersistentDomainForName:(NSString*)domain;
+ (void)resetStandardUserDefaults;
@end

#pragma clang assume_nonnull end
