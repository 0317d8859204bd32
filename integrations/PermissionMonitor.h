// What the system lets the program do, polled while somebody looks: no system tells of changes in a way we could use.
#pragma once

#include <memory>
#include <string>

#include "integrations/PermissionStatus.h"
#include "platform/Permissions.h"
#include "runtime/Observable.h"
#include "runtime/Runtime.h"
#include "runtime/Task.h"

namespace quillmere {

/// [main] throughout.
class PermissionMonitor {
 public:
  /// Reads both permissions once. `permissions` and the runtime's services outlive the monitor.
  PermissionMonitor(Permissions& permissions, const Runtime& runtime);
  ~PermissionMonitor();
  PermissionMonitor(const PermissionMonitor&) = delete;
  PermissionMonitor& operator=(const PermissionMonitor&) = delete;

  /// Never `denied`: the system tells no more than whether it was given.
  [[nodiscard]] const Observable<PermissionStatus>& accessibility() const { return accessibility_; }
  [[nodiscard]] const Observable<PermissionStatus>& focusStatus() const { return focusStatus_; }

  /// Reads both again.
  void refresh();
  /// A view that shows them has come on screen: both are read every half second from now on. However many there are,
  /// one loop serves them.
  void startPolling();
  /// A view that has started it goes off screen; with the last one the reading ends.
  void stopPolling();
  /// Asks for focus status; reads both once the system has answered.
  void requestFocusStatus();
  /// Opens a pane of the system's settings: "Privacy_Accessibility" or "Privacy_FocusStatus". False where there is
  /// none.
  bool openSystemSettings(const std::string& anchor);

  /// What the row and the card for accessibility do, whatever their button says: ask, open the settings, read again.
  /// False where there are no settings to open.
  bool grantAccessibility();
  /// The same for focus status.
  bool grantFocusStatus();

 private:
  Permissions& permissions_;
  Runtime runtime_;
  Observable<PermissionStatus> accessibility_;
  Observable<PermissionStatus> focusStatus_;
  /// Views that want to be kept up to date.
  int viewers_ = 0;
  Task pollTask_;
  /// Answers may come when the monitor has gone.
  std::shared_ptr<PermissionMonitor*> self_;
};

}  // namespace quillmere
