// Starts the framework's standard controller, if there is one.
#include "platform/macos/MacUpdater.h"

#import <Foundation/Foundation.h>
#import <Sparkle/Sparkle.h>

#include "core/Product.h"

namespace quillmere {

struct MacUpdater::Controller {
  SPUStandardUpdaterController* standard = nil;
};

MacUpdater::MacUpdater(Workspace& workspace, Updater* announced)
    : workspace_(workspace), announced_(announced), controller_(std::make_unique<Controller>()) {
  // By its name, so that the program builds and runs without the framework. Asking for a class loads the bundle.
  NSURL* folder = NSBundle.mainBundle.privateFrameworksURL;
  NSURL* framework = [folder URLByAppendingPathComponent:@"Sparkle.framework"];
  NSBundle* bundle = framework != nil ? [NSBundle bundleWithURL:framework] : nil;
  const Class standard = [bundle classNamed:@"SPUStandardUpdaterController"];
  SPUStandardUpdaterController* controller = [standard alloc];
  controller_->standard = [controller initWithStartingUpdater:YES updaterDelegate:nil userDriverDelegate:nil];
}

MacUpdater::~MacUpdater() = default;

const Observable<std::optional<std::string>>& MacUpdater::latestVersion() const {
  return announced_ != nullptr ? announced_->latestVersion() : unknown_;
}

void MacUpdater::checkForUpdates() {
  SPUUpdater* updater = controller_->standard.updater;
  if (updater != nil) {
    [updater checkForUpdates];
  } else {
    workspace_.openURL(downloadAddress());
  }
}

}  // namespace quillmere
