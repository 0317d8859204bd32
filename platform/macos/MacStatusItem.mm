// The button opens the popover; a right click lends it a menu for as long as that is open.
#include "platform/macos/MacStatusItem.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <utility>

#include "foundation/Text.h"

namespace {

constexpr CGFloat iconHeight = 14;
constexpr CGFloat menuIconSide = 15;
constexpr NSEventMask clicks = NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown;
static_assert(clicks == 10);

NSImage* markNamed(NSString* name) {
  NSURL* url = [NSBundle.mainBundle URLForResource:name withExtension:@"svg"];
  return url != nil ? [[NSImage alloc] initWithContentsOfURL:url] : nil;
}

/// The mark at so many points of height; a filled circle where it is missing.
NSImage* statusBarImage(CGFloat height) {
  NSImage* image = markNamed(@"statusbaricon");
  if (image != nil) {
    image.size = NSMakeSize(image.size.width * height / std::max<CGFloat>(image.size.height, 1), height);
  } else {
    image = [NSImage imageWithSize:NSMakeSize(height, height)
                           flipped:NO
                    drawingHandler:^BOOL(NSRect place) {
                      [NSColor.blackColor setFill];
                      [[NSBezierPath bezierPathWithOvalInRect:place] fill];
                      return YES;
                    }];
  }
  [image setTemplate:YES];
  // What is read out for a button without a text.
  image.accessibilityDescription = @"quillmere";
  return image;
}

NSImage* whisperImage() {
  NSImage* image = markNamed(@"shush");
  image.size = NSMakeSize(menuIconSide, menuIconSide);
  [image setTemplate:YES];
  return image;
}

}  // namespace

/// What the button and the menu's entries call. Holds nothing that it doesn't own.
@interface QuillmereStatusTarget : NSObject
@property(nonatomic, copy) void (^clicked)(void);
@property(nonatomic, copy) void (^chosen)(NSInteger tag);
- (void)handleClick:(id)sender;
- (void)choose:(NSMenuItem*)sender;
@end

@implementation QuillmereStatusTarget
- (void)handleClick:(id)sender {
  if (self.clicked != nil) self.clicked();
}
- (void)choose:(NSMenuItem*)sender {
  if (self.chosen != nil) self.chosen(sender.tag);
}
@end

namespace quillmere {

struct MacStatusItem::Item {
  NSStatusItem* statusItem = nil;
  QuillmereStatusTarget* target = [[QuillmereStatusTarget alloc] init];
  NSString* toolTip = @"";
  /// The latest one: what was chosen from it may be told once it has closed.
  NSMenu* rightClickMenu = nil;
  std::vector<StatusMenuItem> menu;
  std::function<void(const StatusItemActivation&)> activated;
  std::function<void(int, const std::string&)> chosen;
  std::function<void()> aboutToShow;

  [[nodiscard]] NSMenu* build(const std::vector<StatusMenuItem>& items) const {
    NSMenu* built = [[NSMenu alloc] initWithTitle:@""];
    built.autoenablesItems = NO;
    for (const auto& each : items) {
      if (each.kind == StatusMenuItem::Kind::separator) {
        [built addItem:[NSMenuItem separatorItem]];
        continue;
      }
      NSMenuItem* entry = [[NSMenuItem alloc] initWithTitle:macos::nsString(each.title)
                                                     action:@selector(choose:)
                                              keyEquivalent:macos::nsString(each.key)];
      entry.target = target;
      entry.tag = each.id;
      entry.enabled = each.isEnabled;
      entry.state = each.isChecked.value_or(false) ? NSControlStateValueOn : NSControlStateValueOff;
      if (each.icon == StatusMenuIcon::whisper) entry.image = whisperImage();
      if (each.kind == StatusMenuItem::Kind::submenu) {
        entry.action = nil;
        entry.enabled = !each.children.empty();
        entry.submenu = build(each.children);
      }
      [built addItem:entry];
    }
    return built;
  }

  void handleClick() {
    NSEvent* event = NSApp.currentEvent;
    if (event == nil || event.type != NSEventTypeRightMouseDown) {
      if (activated) activated({});
      return;
    }
    if (aboutToShow) aboutToShow();
    // Lent for the length of this click, which returns when the menu has closed: a left click never opens it.
    rightClickMenu = build(menu);
    statusItem.menu = rightClickMenu;
    [statusItem.button performClick:nil];
    statusItem.menu = nil;
  }
};

MacStatusItem::MacStatusItem() : item_(std::make_shared<Item>()) {
  const std::weak_ptr<Item> kept = item_;
  item_->target.clicked = ^{
    if (const auto item = kept.lock()) item->handleClick();
  };
  item_->target.chosen = ^(NSInteger tag) {
    const auto item = kept.lock();
    if (item && item->chosen) item->chosen(static_cast<int>(tag), {});
  };
}

MacStatusItem::~MacStatusItem() {
  if (item_->statusItem != nil) [NSStatusBar.systemStatusBar removeStatusItem:item_->statusItem];
}

void* MacStatusItem::button() const { return (__bridge void*)item_->statusItem.button; }

void MacStatusItem::onAvailabilityChanged(std::function<void(bool isAvailable)> callback) {
  const auto told = std::move(callback);
  const std::weak_ptr<Item> kept = item_;
  dispatch_async(dispatch_get_main_queue(), ^{
    if (!kept.expired()) told(true);
  });
}

void MacStatusItem::show() {
  if (item_->statusItem != nil) return;
  item_->statusItem = [NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength];
  NSStatusBarButton* button = item_->statusItem.button;
  button.image = statusBarImage(iconHeight);
  button.target = item_->target;
  button.action = @selector(handleClick:);
  [button sendActionOn:clicks];
  button.toolTip = item_->toolTip;
}

void MacStatusItem::setMenu(std::vector<StatusMenuItem> menu) { item_->menu = std::move(menu); }

void MacStatusItem::setToolTip(std::string text) {
  item_->toolTip = macos::nsString(text);
  item_->statusItem.button.toolTip = item_->toolTip;
}

void MacStatusItem::onActivated(std::function<void(const StatusItemActivation& activation)> callback) {
  item_->activated = std::move(callback);
}

void MacStatusItem::onMenuItemChosen(std::function<void(int id, const std::string& activationToken)> callback) {
  item_->chosen = std::move(callback);
}

void MacStatusItem::onMenuAboutToShow(std::function<void()> callback) { item_->aboutToShow = std::move(callback); }

}  // namespace quillmere
