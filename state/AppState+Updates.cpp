// Newer versions of this program: what is known of them, and the way to them.
#include "core/Product.h"
#include "platform/Updater.h"
#include "platform/Workspace.h"
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

void AppState::useUpdater(Updater& updater) {
  QUILLMERE_CHECK_ON(runtime_.main, "the updater is set off the main thread");
  updater_ = &updater;
  latestVersion_.set(*updater.latestVersion());
  updaterWatch_ = updater.latestVersion().observe([this](const auto& version) { latestVersion_.set(version); });
}

void AppState::checkForUpdates() {
  QUILLMERE_CHECK_ON(runtime_.main, "checkForUpdates off the main thread");
  if (updater_ != nullptr) {
    updater_->checkForUpdates();
  } else {
    machine_.workspace->openURL(downloadAddress());
  }
}

}  // namespace quillmere
