#include "platform/macos/MacMediaKeys.h"

#import <AppKit/AppKit.h>

#include "platform/macos/pure/MediaKeyEvent.h"

namespace quillmere {

namespace {

static_assert(NSEventTypeSystemDefined == 14);
static_assert(kCGHIDEventTap == 0);

void post(const macos::MediaKeyEvent& told) {
  // Its CGEvent lives as long as it does.
  NSEvent* const event __attribute__((objc_precise_lifetime)) =
      [NSEvent otherEventWithType:NSEventTypeSystemDefined
                         location:NSMakePoint(0, 0)
                    modifierFlags:static_cast<NSEventModifierFlags>(told.modifierFlags)
                        timestamp:NSProcessInfo.processInfo.systemUptime
                     windowNumber:0
                          context:nil
                          subtype:told.subtype
                            data1:static_cast<NSInteger>(told.data1)
                            data2:static_cast<NSInteger>(told.data2)];
  const CGEventRef posted = event.CGEvent;
  if (posted == nullptr) return;
  CGEventPost(kCGHIDEventTap, posted);
}

}  // namespace

void MacMediaKeys::press(std::int32_t key, mediakey::Purpose /*purpose*/) {
  post(macos::mediaKeyEvent(key, true));
  post(macos::mediaKeyEvent(key, false));
}

}  // namespace quillmere
