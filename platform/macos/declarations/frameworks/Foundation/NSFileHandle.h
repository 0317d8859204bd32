// Stands for <Foundation/NSFileHandle.h>
#pragma once

#import <Foundation/NSData.h>
#import <Foundation/NSError.h>

#pragma clang assume_nonnull begin

@interface NSFileHandle : NSObject
- (BOOL)writeData:(NSData*)data error:(NSError* _Nullable* _Nullable)error;
- (BOOL)closeAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

@interface NSPipe : NSObject
@property(readonly, retain) NSFileHandle* fileHandleForWriting;
+ (NSPipe*)pipe;
@end

#pragma clang assume_nonnull end
