// Stands for <Sparkle/Sparkle.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@protocol SPUUpdaterDelegate;
@protocol SPUStandardUserDriverDelegate;

@interface SPUUpdater : NSObject
- (void)checkForUpdates;
@end

@interface SPUStandardUpdaterController : NSObject
@property(nonatomic, readonly) SPUUpdater* updater;
- (instancetype)initWithStartingUpdater:(BOOL)starts
                        updaterDelegate:(nullable id<SPUUpdaterDelegate>)updaterDelegate
                     userDriverDelegate:(nullable id<SPUStandardUserDriverDelegate>)userDriverDelegate;
@end

#pragma clang assume_nonnull end
