// Stands for <Foundation/NSAppleScript.h>
#pragma once

#import <Foundation/NSAppleEventDescriptor.h>
#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

extern "C" NSString* const NSAppleScriptErrorMessage;
extern "C" NSString* const NSAppleScriptErrorNumber;

@interface NSAppleScript : NSObject <NSCopying>
- (nullable instancetype)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
