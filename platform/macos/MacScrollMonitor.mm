// A local event monitor.
#include "platform/macos/MacScrollMonitor.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace quillmere {

namespace {

constexpr NSEventMask mask = NSEventMaskScrollWheel;
static_assert(mask == 0x400000);

}  // namespace

struct MacScrollMonitor::Monitor {
  id handle = nil;
};

MacScrollMonitor::MacScrollMonitor(macos::ScrollCatch listener) : monitor_(std::make_unique<Monitor>()) {
  // The monitor holds its block, which so outlives nobody it calls: the destructor takes it away.
  const auto asked = std::move(listener);
  monitor_->handle =
      [NSEvent addLocalMonitorForEventsMatchingMask:mask
                                            handler:^NSEvent*(NSEvent* event) {
                                              const void* window = (__bridge const void*)event.window;
                                              const double delta = event.scrollingDeltaY;
                                              return macos::takesScroll(asked, window, delta) ? nil : event;
                                            }];
}

MacScrollMonitor::~MacScrollMonitor() {
  if (monitor_->handle != nil) [NSEvent removeMonitor:monitor_->handle];
}

const void* MacScrollMonitor::windowOf(void* view) {
  NSView* content = (__bridge NSView*)view;
  return (__bridge const void*)content.window;
}

}  // namespace quillmere
