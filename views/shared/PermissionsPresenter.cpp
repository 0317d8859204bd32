// Both permissions.
#include "views/shared/PermissionsPresenter.h"

#include "integrations/DesktopServices.h"
#include "integrations/PermissionMonitor.h"

namespace quillmere {

PermissionsPresenter::PermissionsPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      monitor_(services.desktop.permissions()),
      accessibility_(
          monitor_.accessibility(), [this] { return monitor_.grantAccessibility(); },
          tr("No settings for this were found. It is granted once the desktop's portal offers global "
             "shortcuts.")),
      focusStatus_(
          monitor_.focusStatus(), [this] { return monitor_.grantFocusStatus(); },
          tr("No settings for this were found. It is granted once the desktop's notifications have a "
             "do-not-disturb mode.")) {}

PermissionsPresenter::~PermissionsPresenter() { setVisible(false); }

void PermissionsPresenter::setVisible(bool visible) {
  if (isVisible_ == visible) return;
  isVisible_ = visible;
  if (visible) {
    monitor_.startPolling();
  } else {
    monitor_.stopPolling();
  }
}

}  // namespace quillmere
