// Two permissions, read again and again.
#include "integrations/PermissionMonitor.h"

#include <chrono>

#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr auto pollInterval = std::chrono::milliseconds(500);

PermissionStatus focusStatusFor(int authorization) {
  switch (static_cast<FocusAuthorization>(authorization)) {
    case FocusAuthorization::notDetermined:
      break;
    case FocusAuthorization::restricted:
    case FocusAuthorization::denied:
      return PermissionStatus::denied;
    case FocusAuthorization::authorized:
      return PermissionStatus::granted;
  }
  return PermissionStatus::notDetermined;
}

}  // namespace

PermissionMonitor::PermissionMonitor(Permissions& permissions, const Runtime& runtime)
    : permissions_(permissions), runtime_(runtime), self_(std::make_shared<PermissionMonitor*>(this)) {
  permissions_.onChanged([this] { refresh(); });
  refresh();
}

PermissionMonitor::~PermissionMonitor() {
  pollTask_.cancel();
  permissions_.onChanged({});
  *self_ = nullptr;
}

void PermissionMonitor::refresh() {
  QUILLMERE_CHECK_ON(runtime_.main, "permissions are read off the main thread");
  accessibility_.set(permissions_.isProcessTrusted() ? PermissionStatus::granted : PermissionStatus::notDetermined);
  focusStatus_.set(focusStatusFor(permissions_.focusAuthorization()));
}

void PermissionMonitor::startPolling() {
  QUILLMERE_CHECK_ON(runtime_.main, "permissions are polled off the main thread");
  ++viewers_;
  if (pollTask_) return;
  pollTask_ = startTask(runtime_.main, [self = self_](TaskContext& task) -> Async<void> {
    while (!task.isCancelled() && *self != nullptr) {
      (*self)->refresh();
      co_await task.sleep(pollInterval);
    }
  });
}

void PermissionMonitor::stopPolling() {
  QUILLMERE_CHECK_ON(runtime_.main, "permissions are polled off the main thread");
  if (viewers_ > 0) --viewers_;
  if (viewers_ > 0) return;
  pollTask_.cancel();
  pollTask_ = Task();
}

void PermissionMonitor::requestFocusStatus() {
  QUILLMERE_CHECK_ON(runtime_.main, "permissions are asked for off the main thread");
  permissions_.requestFocusAuthorization([self = self_, &main = runtime_.main] {
    main.post([self] {
      if (*self != nullptr) (*self)->refresh();
    });
  });
}

bool PermissionMonitor::openSystemSettings(const std::string& anchor) {
  QUILLMERE_CHECK_ON(runtime_.main, "settings are opened off the main thread");
  return permissions_.openSettings(anchor);
}

bool PermissionMonitor::grantAccessibility() {
  permissions_.promptForTrust();
  const bool opened = openSystemSettings("Privacy_Accessibility");
  refresh();
  return opened;
}

bool PermissionMonitor::grantFocusStatus() {
  requestFocusStatus();
  return openSystemSettings("Privacy_FocusStatus");
}

}  // namespace quillmere
