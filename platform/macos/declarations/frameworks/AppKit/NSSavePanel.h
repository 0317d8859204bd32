// Stands for <AppKit/NSSavePanel.h>
#pragma once

#import <AppKit/NSPanel.h>

#pragma clang assume_nonnull begin

@class UTType;

typedef NSInteger NSModalResponse;
static const NSModalResponse NSModalResponseOK = 1;

@interface NSSavePanel : NSPanel
@property(nullable, readonly, copy) NSURL* URL;
@property(nullable, copy) NSURL* directoryURL;
@property(copy) NSArray<UTType*>* allowedContentTypes;
@property(copy) NSString* message;
- (void)beginWithCompletionHandler:(void (^)(NSModalResponse response))handler;
- (void)cancel:(nullable id)sender;
@end

#pragma clang assume_nonnull end
