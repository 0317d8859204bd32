// The updater that most programs on a Mac have: it finds, fetches and installs a newer version by itself.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Updater.h"
#include "platform/Workspace.h"

namespace quillmere {

/// [main] throughout. Where its framework is not in the bundle the way leads to the download page.
class MacUpdater final : public Updater {
 public:
  /// Starts it: it looks by itself from now on, as often as its settings in the bundle say. The workspace outlives
  /// this.
  explicit MacUpdater(Workspace& workspace);
  ~MacUpdater() override;
  MacUpdater(const MacUpdater&) = delete;
  MacUpdater& operator=(const MacUpdater&) = delete;

  void checkForUpdates() override;
  /// Always absent: it tells its user itself.
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latestVersion_; }

 private:
  struct Controller;
  Workspace& workspace_;
  std::unique_ptr<Controller> controller_;
  Observable<std::optional<std::string>> latestVersion_;
};

}  // namespace quillmere
