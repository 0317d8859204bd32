// What the windows' presenters know of the desktop, made of its ports and handed to whoever makes windows.
#pragma once

#include "integrations/AppDirectory.h"
#include "integrations/LaunchAtLogin.h"
#include "integrations/PermissionMonitor.h"
#include "platform/Desktop.h"

namespace quillmere {

/// [main] throughout; outlives every window.
class DesktopServices {
 public:
  /// The runtime's services outlive this object.
  DesktopServices(Desktop desktop, const Runtime& runtime, AppDirectory::Sounding sounding = {});

  [[nodiscard]] Workspace& workspace() { return *desktop_.workspace; }
  [[nodiscard]] AppDirectory& apps() { return apps_; }
  [[nodiscard]] PermissionMonitor& permissions() { return permissions_; }
  [[nodiscard]] LaunchAtLogin& launchAtLogin() { return launchAtLogin_; }

 private:
  Desktop desktop_;
  AppDirectory apps_;
  PermissionMonitor permissions_;
  LaunchAtLogin launchAtLogin_;
};

}  // namespace quillmere
