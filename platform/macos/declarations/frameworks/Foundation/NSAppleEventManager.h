// Stands for <Foundation/NSAppleEventManager.h>
#pragma once

#import <Foundation/NSAppleEventDescriptor.h>

#pragma clang assume_nonnull begin

typedef UInt32 AEEventClass;
typedef UInt32 AEEventID;

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

#pragma clang assume_nonnull end
