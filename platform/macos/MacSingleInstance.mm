// Looks at what runs.
#include "platform/macos/MacSingleInstance.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

#include <utility>

/// What the system sends when a program that runs is opened once more.
@interface QuillmereReopening : NSObject
@property(nonatomic, copy) void (^asked)(void);
- (void)handleReopen:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;
@end

@implementation QuillmereReopening
- (void)handleReopen:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply {
  if (self.asked != nil) self.asked();
}
@end

namespace quillmere {

struct MacSingleInstance::Reopening {
  QuillmereReopening* handler = [[QuillmereReopening alloc] init];
  bool isSet = false;
};

MacSingleInstance::MacSingleInstance() : reopening_(std::make_unique<Reopening>()) {}

MacSingleInstance::~MacSingleInstance() {
  reopening_->handler.asked = nil;
  if (!reopening_->isSet) return;
  [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                    andEventID:kAEReopenApplication];
}

void MacSingleInstance::onActivationRequested(std::function<void(const ActivationRequest& request)> callback) {
  reopening_->handler.asked = nil;
  if (!callback) return;
  const auto told = std::move(callback);
  reopening_->handler.asked = ^{
    told({});
  };
  if (std::exchange(reopening_->isSet, true)) return;
  // Once the loop runs: the application object sets handlers of its own when it has finished launching.
  QuillmereReopening* handler = reopening_->handler;
  dispatch_async(dispatch_get_main_queue(), ^{
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:handler
                                                     andSelector:@selector(handleReopen:withReplyEvent:)
                                                   forEventClass:kCoreEventClass
                                                      andEventID:kAEReopenApplication];
  });
}

bool MacSingleInstance::acquire(const std::optional<ActivationRequest>& /*request*/) {
  NSString* identifier = NSBundle.mainBundle.bundleIdentifier;
  if (identifier == nil) identifier = @"app.quillmere.host";
  const pid_t own = NSProcessInfo.processInfo.processIdentifier;
  for (NSRunningApplication* other in [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
    if (other.processIdentifier == own) continue;
    [other activateWithOptions:0];
    return false;
  }
  return true;
}

}  // namespace quillmere
