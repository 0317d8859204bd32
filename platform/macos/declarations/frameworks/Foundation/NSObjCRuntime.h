// Stands for <Foundation/NSObjCRuntime.h>
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <objc/NSObject.h>
#import <os/availability.h>

#pragma clang assume_nonnull begin

#define NS_ENUM(type, name) CF_ENUM(type, name)
#define NS_OPTIONS(type, name) CF_OPTIONS(type, name)
#define NS_NOESCAPE __attribute__((noescape))
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NS_SWIFT_UI_ACTOR
#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

@class NSString;
extern "C" void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
extern "C" NSString* NSStringFromSelector(SEL aSelector);

typedef NS_ENUM(NSInteger, NSComparisonResult) { NSOrderedAscending = -1, NSOrderedSame = 0, NSOrderedDescending = 1 };
static const NSInteger NSNotFound = __LONG_MAX__;

#pragma clang assume_nonnull end
