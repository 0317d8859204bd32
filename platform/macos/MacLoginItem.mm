// Asks the service manager.
#include "platform/macos/MacLoginItem.h"

#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

#include "foundation/Text.h"

namespace quillmere {

// The port's numbers are the service manager's.
static_assert(static_cast<int>(LoginItemStatus::notRegistered) == SMAppServiceStatusNotRegistered);
static_assert(static_cast<int>(LoginItemStatus::enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<int>(LoginItemStatus::requiresApproval) == SMAppServiceStatusRequiresApproval);
static_assert(static_cast<int>(LoginItemStatus::notFound) == SMAppServiceStatusNotFound);

namespace {

std::string words(NSError* error) { return macos::utf8(error.localizedDescription).value_or("no reason was given"); }

}  // namespace

LoginItem::Failure MacLoginItem::registerItem() {
  @autoreleasepool {
    NSError* error = nil;
    if ([SMAppService.mainAppService registerAndReturnError:&error]) return std::nullopt;
    return words(error);
  }
}

LoginItem::Failure MacLoginItem::unregisterItem() {
  @autoreleasepool {
    NSError* error = nil;
    if ([SMAppService.mainAppService unregisterAndReturnError:&error]) return std::nullopt;
    // It was not there, which is what was wished.
    if (SMAppService.mainAppService.status == SMAppServiceStatusNotRegistered) return std::nullopt;
    return words(error);
  }
}

LoginItemStatus MacLoginItem::status() {
  @autoreleasepool {
    return static_cast<LoginItemStatus>(SMAppService.mainAppService.status);
  }
}

}  // namespace quillmere
