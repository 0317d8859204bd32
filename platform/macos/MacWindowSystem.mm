// Asks the application object.
#include "platform/macos/MacWindowSystem.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "foundation/Observers.h"
#include "foundation/Text.h"

namespace quillmere {

namespace {

std::string identifierOf(NSWindow* window) { return macos::utf8(window.identifier).value_or(""); }

NSWindow* windowNamed(const std::string& identifier) {
  NSString* wanted = macos::nsString(identifier);
  for (NSWindow* window in NSApp.windows) {
    if ([window.identifier isEqualToString:wanted]) return window;
  }
  return nil;
}

}  // namespace

struct MacWindowSystem::Watch {
  macos::Observers observers;
};

MacWindowSystem::MacWindowSystem(MacWindowMaker maker) : maker_(std::move(maker)), watch_(std::make_unique<Watch>()) {}

MacWindowSystem::~MacWindowSystem() = default;

void MacWindowSystem::setIdentifier(void* view, const std::string& identifier) {
  NSView* content = (__bridge NSView*)view;
  content.window.identifier = macos::nsString(identifier);
}

void MacWindowSystem::hideTitleBar(void* view, const MacColour& ground) {
  NSView* content = (__bridge NSView*)view;
  NSWindow* window = content.window;
  window.titleVisibility = NSWindowTitleHidden;
  window.titlebarAppearsTransparent = YES;
  window.backgroundColor = [NSColor colorWithSRGBRed:ground.red green:ground.green blue:ground.blue alpha:1];
}

std::vector<WindowInfo> MacWindowSystem::windows() const {
  std::vector<WindowInfo> found;
  for (NSWindow* window in NSApp.windows) found.push_back({identifierOf(window), window.visible == YES});
  return found;
}

void MacWindowSystem::open(const std::string& identifier) { maker_.open(identifier); }

void MacWindowSystem::close(const std::string& identifier) { maker_.close(identifier); }

void MacWindowSystem::orderFront(const std::string& identifier) { [windowNamed(identifier) makeKeyAndOrderFront:nil]; }

ActivationPolicy MacWindowSystem::activationPolicy() const {
  return NSApp.activationPolicy == NSApplicationActivationPolicyRegular ? ActivationPolicy::regular
                                                                        : ActivationPolicy::accessory;
}

void MacWindowSystem::setActivationPolicy(ActivationPolicy policy) {
  [NSApp setActivationPolicy:policy == ActivationPolicy::regular ? NSApplicationActivationPolicyRegular
                                                                 : NSApplicationActivationPolicyAccessory];
}

void MacWindowSystem::activate() { [NSApp activateIgnoringOtherApps:YES]; }

void MacWindowSystem::showAboutPanel(const std::string& /*activationToken*/) {
  [NSApp orderFrontStandardAboutPanel:nil];
}

void MacWindowSystem::terminate() { [NSApp terminate:nil]; }

void MacWindowSystem::onWindowBecameKey(WindowObserver observer) {
  const auto told = std::move(observer);
  watch_->observers.add(NSNotificationCenter.defaultCenter, NSWindowDidBecomeKeyNotification,
                        ^(NSNotification* notification) {
                          told(identifierOf(static_cast<NSWindow*>(notification.object)));
                        });
}

void MacWindowSystem::onWindowWillClose(WindowObserver observer) {
  const auto told = std::move(observer);
  watch_->observers.add(NSNotificationCenter.defaultCenter, NSWindowWillCloseNotification,
                        ^(NSNotification* notification) {
                          told(identifierOf(static_cast<NSWindow*>(notification.object)));
                        });
}

}  // namespace quillmere
