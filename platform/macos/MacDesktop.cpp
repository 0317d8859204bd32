// Putting the desktop together.
#include "platform/macos/MacDesktop.h"

#include "platform/macos/MacApplicationChooser.h"
#include "platform/macos/MacDesktopLook.h"
#include "platform/macos/MacLoginItem.h"
#include "platform/macos/MacPermissions.h"
#include "platform/macos/MacWorkspace.h"

namespace quillmere {

Desktop makeMacDesktop() {
  Desktop desktop;
  desktop.workspace = std::make_unique<MacWorkspace>();
  desktop.permissions = std::make_unique<MacPermissions>();
  desktop.loginItem = std::make_unique<MacLoginItem>();
  desktop.applicationChooser = std::make_unique<MacApplicationChooser>();
  desktop.look = std::make_unique<MacDesktopLook>();
  return desktop;
}

}  // namespace quillmere
