// From ports to what presenters use.
#include "integrations/DesktopServices.h"

#include <utility>

namespace quillmere {

DesktopServices::DesktopServices(Desktop desktop, const Runtime& runtime, AppDirectory::Sounding sounding)
    : desktop_(std::move(desktop)),
      apps_(*desktop_.workspace, *desktop_.applicationChooser, runtime, std::move(sounding)),
      permissions_(*desktop_.permissions, runtime),
      launchAtLogin_(*desktop_.loginItem, runtime) {}

}  // namespace quillmere
