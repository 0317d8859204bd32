// A desktop in memory, with its parts at hand for a test or a picture.
#pragma once

#include <memory>

#include "platform/Desktop.h"
#include "platform/memory/MemoryApplicationChooser.h"
#include "platform/memory/MemoryBrowserSetUp.h"
#include "platform/memory/MemoryDesktopLook.h"
#include "platform/memory/MemoryLoginItem.h"
#include "platform/memory/MemoryPermissions.h"
#include "platform/memory/MemoryWorkspace.h"

namespace quillmere {

/// [main]
struct MemoryDesktop {
  Desktop desktop{std::make_unique<MemoryWorkspace>(),   std::make_unique<MemoryPermissions>(),
                  std::make_unique<MemoryLoginItem>(),   std::make_unique<MemoryApplicationChooser>(),
                  std::make_unique<MemoryDesktopLook>(), std::make_unique<MemoryBrowserSetUp>()};
  MemoryWorkspace& workspace = static_cast<MemoryWorkspace&>(*desktop.workspace);
  MemoryPermissions& permissions = static_cast<MemoryPermissions&>(*desktop.permissions);
  MemoryLoginItem& loginItem = static_cast<MemoryLoginItem&>(*desktop.loginItem);
  MemoryApplicationChooser& chooser = static_cast<MemoryApplicationChooser&>(*desktop.applicationChooser);
  MemoryDesktopLook& look = static_cast<MemoryDesktopLook&>(*desktop.look);
  MemoryBrowserSetUp& browserSetUp = static_cast<MemoryBrowserSetUp&>(*desktop.browserSetUp);
};

}  // namespace quillmere
