// The updater that most programs on a Mac have: it finds, fetches and installs a newer version by itself.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Updater.h"
#include "platform/Workspace.h"

namespace quillmere {

/// [main] throughout. Where its framework is not in the bundle the way leads to the download page.
/// It tells its user of a newer version itself; what the program shows comes from the product's feed, if that is known.
class MacUpdater final : public Updater {
 public:
  /// Starts it: it looks by itself from now on, as often as its settings in the bundle say. The workspace outlives
  /// this, and so does `announced`, which knows what the feed says; null where there is no feed.
  MacUpdater(Workspace& workspace, Updater* announced);
  ~MacUpdater() override;
  MacUpdater(const MacUpdater&) = delete;
  MacUpdater& operator=(const MacUpdater&) = delete;

  void checkForUpdates() override;
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override;

 private:
  struct Controller;
  Workspace& workspace_;
  Updater* announced_;
  std::unique_ptr<Controller> controller_;
  /// For ever absent.
  Observable<std::optional<std::string>> unknown_;
};

}  // namespace quillmere
