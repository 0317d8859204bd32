// A transient popover.
#include "platform/macos/MacPopover.h"

#import <AppKit/AppKit.h>

#include <utility>

/// Counts from its upper edge, as whoever draws in it does.
@interface QuillmerePopoverContent : NSView
@end

@implementation QuillmerePopoverContent
- (BOOL)isFlipped {
  return YES;
}
@end

@interface QuillmerePopoverDelegate : NSObject <NSPopoverDelegate>
@property(nonatomic, copy) void (^closing)(void);
@property(nonatomic, copy) void (^closed)(void);
@end

@implementation QuillmerePopoverDelegate
- (void)popoverWillClose:(NSNotification*)notification {
  if (self.closing != nil) self.closing();
}
- (void)popoverDidClose:(NSNotification*)notification {
  if (self.closed != nil) self.closed();
}
@end

namespace quillmere {

namespace {

void (^_Nullable blockOf(std::function<void()> callback))(void) {
  if (!callback) return nil;
  return ^{
    callback();
  };
}

}  // namespace

struct MacPopover::Parts {
  NSPopover* popover = [[NSPopover alloc] init];
  NSViewController* controller = [[NSViewController alloc] initWithNibName:nil bundle:nil];
  // The popover holds its delegate weakly.
  QuillmerePopoverDelegate* delegate = [[QuillmerePopoverDelegate alloc] init];
};

MacPopover::MacPopover() : parts_(std::make_unique<Parts>()) {
  parts_->controller.view = [[QuillmerePopoverContent alloc] initWithFrame:NSZeroRect];
  parts_->popover.behavior = NSPopoverBehaviorTransient;
  parts_->popover.animates = YES;
  parts_->popover.contentViewController = parts_->controller;
  parts_->popover.delegate = parts_->delegate;
}

MacPopover::~MacPopover() {
  parts_->delegate.closing = nil;
  parts_->delegate.closed = nil;
  [parts_->popover close];
}

void* MacPopover::content() const { return (__bridge void*)parts_->controller.view; }

void MacPopover::setContentSize(double width, double height) {
  parts_->controller.preferredContentSize = NSMakeSize(width, height);
}

void MacPopover::show(void* anchor) {
  NSView* view = (__bridge NSView*)anchor;
  [parts_->popover showRelativeToRect:view.bounds ofView:view preferredEdge:NSRectEdgeMinY];
  [parts_->controller.view.window makeKeyWindow];
}

void MacPopover::close() {
  if (isShown()) [parts_->popover performClose:nil];
}

bool MacPopover::isShown() const { return parts_->popover.shown == YES; }

void MacPopover::onClosing(std::function<void()> callback) { parts_->delegate.closing = blockOf(std::move(callback)); }

void MacPopover::onClosed(std::function<void()> callback) { parts_->delegate.closed = blockOf(std::move(callback)); }

}  // namespace quillmere
