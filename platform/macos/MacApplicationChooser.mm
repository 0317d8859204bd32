// One panel at a time.
#include "platform/macos/MacApplicationChooser.h"

#import <AppKit/AppKit.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

#include <utility>

#include "foundation/Text.h"

namespace quillmere {

struct MacApplicationChooser::Panel {
  NSOpenPanel* open = nil;
  /// Whose the open panel is.
  Reply reply;

  void answer(std::optional<std::string> path) {
    open = nil;
    if (const auto told = std::exchange(reply, nullptr)) told(std::move(path));
  }
};

MacApplicationChooser::MacApplicationChooser() : panel_(std::make_shared<Panel>()) {}

MacApplicationChooser::~MacApplicationChooser() {
  panel_->reply = nullptr;
  [panel_->open cancel:nil];
}

void MacApplicationChooser::choose(const ApplicationQuestion& question, Reply reply) {
  if (panel_->open != nil) {
    const auto earlier = std::exchange(panel_->reply, std::move(reply));
    [panel_->open makeKeyAndOrderFront:nil];
    if (!earlier) return;
    dispatch_async(dispatch_get_main_queue(), ^{
      earlier(std::nullopt);
    });
    return;
  }
  NSOpenPanel* panel = [NSOpenPanel openPanel];
  panel.allowedContentTypes = @[ UTTypeApplication ];
  panel.canChooseDirectories = NO;
  panel.allowsMultipleSelection = NO;
  panel.directoryURL = [NSURL fileURLWithPath:@"/Applications"];
  panel.message = macos::nsString(question.title);
  panel_->open = panel;
  panel_->reply = std::move(reply);
  const std::weak_ptr<Panel> kept = panel_;
  [panel beginWithCompletionHandler:^(NSModalResponse response) {
    const auto asked = kept.lock();
    if (!asked) return;
    asked->answer(response == NSModalResponseOK ? macos::utf8(panel.URL.path) : std::nullopt);
  }];
}

}  // namespace quillmere
