// The desktop as the windows see it: what they ask of it directly, without the mixer's process in between.
#pragma once

#include <memory>

#include "platform/ApplicationChooser.h"
#include "platform/BrowserSetUp.h"
#include "platform/DesktopLook.h"
#include "platform/LoginItem.h"
#include "platform/Permissions.h"
#include "platform/Workspace.h"

namespace quillmere {

/// One of each port; made by the program that draws, where nobody waits for a window that hangs.
struct Desktop {
  std::unique_ptr<Workspace> workspace;
  std::unique_ptr<Permissions> permissions;
  std::unique_ptr<LoginItem> loginItem;
  std::unique_ptr<ApplicationChooser> applicationChooser;
  std::unique_ptr<DesktopLook> look;
  /// Null where browsers need nothing.
  std::unique_ptr<BrowserSetUp> browserSetUp = nullptr;
};

}  // namespace quillmere
