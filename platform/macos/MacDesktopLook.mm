// Asks the workspace.
#include "platform/macos/MacDesktopLook.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "foundation/Observers.h"

namespace quillmere {

struct MacDesktopLook::Watch {
  std::function<void(const LookWishes&)> wished;
  macos::Observers observers;

  void tell() const {
    LookWishes wishes;
    wishes.reducesMotion = NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion == YES;
    wishes.wantsContrast = NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast == YES;
    wished(wishes);
  }
};

MacDesktopLook::MacDesktopLook() = default;

MacDesktopLook::~MacDesktopLook() = default;

void MacDesktopLook::onWished(std::function<void(const LookWishes& wishes)> callback) {
  watch_.reset();
  if (!callback) return;
  watch_ = std::make_shared<Watch>();
  watch_->wished = std::move(callback);
  const std::weak_ptr<Watch> kept = watch_;
  const auto tell = ^{
    if (const auto watch = kept.lock()) watch->tell();
  };
  watch_->observers.add(NSWorkspace.sharedWorkspace.notificationCenter,
                        NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification, ^(NSNotification*) {
                          tell();
                        });
  dispatch_async(dispatch_get_main_queue(), tell);
}

}  // namespace quillmere
