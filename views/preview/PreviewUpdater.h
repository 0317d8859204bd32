// An updater that knows what a picture wants it to know.
#pragma once

#include "platform/Updater.h"

namespace quillmere {

/// [main]
class PreviewUpdater final : public Updater {
 public:
  void checkForUpdates() override {}
  [[nodiscard]] const Observable<std::optional<std::string>>& latestVersion() const override { return latest; }

  Observable<std::optional<std::string>> latest;
};

}  // namespace quillmere
