// An activity of the process.
#include "platform/macos/MacActivity.h"

#import <Foundation/Foundation.h>

namespace quillmere {

namespace {

constexpr NSActivityOptions options = NSActivityUserInitiatedAllowingIdleSystemSleep;
static_assert((options & NSActivityIdleSystemSleepDisabled) == 0, "the machine sleeps as ever");

}  // namespace

struct MacActivity::Held {
  id<NSObject> token = nil;
};

MacActivity::MacActivity() : held_(std::make_unique<Held>()) {
  held_->token = [NSProcessInfo.processInfo beginActivityWithOptions:options reason:@"mixes what plays"];
}

MacActivity::~MacActivity() { [NSProcessInfo.processInfo endActivity:held_->token]; }

}  // namespace quillmere
