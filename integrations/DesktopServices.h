// What the windows' presenters know of the desktop, made of its ports and handed to whoever makes windows.
#pragma once

#include <optional>

#include "integrations/AppDirectory.h"
#include "integrations/CompanionSetUp.h"
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
  [[nodiscard]] DesktopLook& look() { return *desktop_.look; }
  /// Reads the permissions with the first question for it, as launchAtLogin() does the login item: most windows never
  /// show either.
  [[nodiscard]] PermissionMonitor& permissions();
  [[nodiscard]] LaunchAtLogin& launchAtLogin();
  [[nodiscard]] CompanionSetUp& companionSetUp() { return companionSetUp_; }

 private:
  Desktop desktop_;
  Runtime runtime_;
  AppDirectory apps_;
  std::optional<PermissionMonitor> permissions_;
  std::optional<LaunchAtLogin> launchAtLogin_;
  CompanionSetUp companionSetUp_;
};

}  // namespace quillmere
