// The software updater: who checks for a newer version, and what is known of it.
#pragma once

#include <optional>
#include <string>

namespace quillmere {

class Updater {
 public:
  virtual ~Updater() = default;
  /// Checks and tells the user the outcome. [main]
  virtual void checkForUpdates() = 0;
  /// The newest published version, if known. [main]
  [[nodiscard]] virtual std::optional<std::string> latestVersion() const = 0;
};

}  // namespace quillmere
