// Both permissions.
#include "views/shared/PermissionsPresenter.h"

#include "integrations/DesktopServices.h"
#include "integrations/PermissionMonitor.h"

namespace quillmere {

PermissionsPresenter::PermissionsPresenter(const ViewServices& services, QObject* parent)
    : QObject(parent),
      monitor_(services.desktop.permissions()),
      accessibility_(monitor_.accessibility(), [this] { monitor_.grantAccessibility(); }),
      focusStatus_(monitor_.focusStatus(), [this] { monitor_.grantFocusStatus(); }) {}

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
