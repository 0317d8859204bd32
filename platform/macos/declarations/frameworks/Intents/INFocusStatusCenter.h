// Stands for <Intents/INFocusStatusCenter.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSInteger, INFocusStatusAuthorizationStatus) {
  INFocusStatusAuthorizationStatusNotDetermined = 0,
  INFocusStatusAuthorizationStatusRestricted = 1,
  INFocusStatusAuthorizationStatusDenied = 2,
  INFocusStatusAuthorizationStatusAuthorized = 3,
};

@interface INFocusStatusCenter : NSObject
@property(class, readonly, strong) INFocusStatusCenter* defaultCenter;
@property(readonly) INFocusStatusAuthorizationStatus authorizationStatus;
- (void)requestAuthorizationWithCompletionHandler:
    (void (^_Nullable)(INFocusStatusAuthorizationStatus status))completionHandler;
@end

#pragma clang assume_nonnull end
