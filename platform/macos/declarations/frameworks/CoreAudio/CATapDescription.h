// Stands for <CoreAudio/CATapDescription.h>
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_ENUM(NSInteger, CATapMuteBehavior) { CATapUnmuted = 0, CATapMuted = 1, CATapMutedWhenTapped = 2 };

API_AVAILABLE(macos(12.0)) @interface CATapDescription : NSObject
- (instancetype)initStereoMixdownOfProcesses:(NSArray<NSNumber*>*)processes;
- (void)setUUID:(NSUUID*)uuid;
- (void)setMuteBehavior:(CATapMuteBehavior)behavior;
- (void)setPrivate:(BOOL)isPrivate;
- (void)setExclusive:(BOOL)isExclusive;
@end

#pragma clang assume_nonnull end
