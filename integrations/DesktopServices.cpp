// From ports to what presenters use.
#include "integrations/DesktopServices.h"

#include <utility>

namespace quillmere {

DesktopServices::DesktopServices(Desktop desktop, const Runtime& runtime, AppDirectory::Sounding sounding)
    : desktop_(std::move(desktop)),
      runtime_(runtime),
      apps_(*desktop_.workspace, *desktop_.applicationChooser, runtime, std::move(sounding)),
      companionSetUp_(desktop_.browserSetUp.get(), runtime) {}

PermissionMonitor& DesktopServices::permissions() {
  if (!permissions_) permissions_.emplace(*desktop_.permissions, runtime_);
  return *permissions_;
}

LaunchAtLogin& DesktopServices::launchAtLogin() {
  if (!launchAtLogin_) launchAtLogin_.emplace(*desktop_.loginItem, runtime_);
  return *launchAtLogin_;
}

}  // namespace quillmere
