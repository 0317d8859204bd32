// The software updater: who checks for a newer version, and what is known of it.
#pragma once

#include <optional>
#include <string>

#include "runtime/Observable.h"

namespace quillmere {

/// Lives in the mixer's process, which is always there. What is known travels on as a field of the mixer's state, so
/// that the status item's entry and the windows' banner say the same: whoever owns both observes latestVersion() and
/// hands each value on to the state. Whether a version is newer than this one is for isOutdated() in
/// core/VersionOrder.h.
class Updater {
 public:
  virtual ~Updater() = default;
  /// Leads the user to a newer version, or to where one would be. [main]
  virtual void checkForUpdates() = 0;
  /// The newest published version, if known: digits and dots, 64 bytes at most. [main]
  [[nodiscard]] virtual const Observable<std::optional<std::string>>& latestVersion() const = 0;
};

}  // namespace quillmere
