// The browsers whose companions are connected now.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillmere {

/// A companion that is connected.
struct BrowserCompanion {
  /// As InstalledBrowser names its browser; the program's file name for one that nothing is known of.
  std::string browser;
  /// The companion's version, and that of the program between it and the mixer.
  std::string version;
  std::string hostVersion;

  friend bool operator==(const BrowserCompanion&, const BrowserCompanion&) = default;
};

class BrowserCompanions {
 public:
  virtual ~BrowserCompanions() = default;
  /// In the order in which they came; a browser with several profiles comes more than once. [any]
  [[nodiscard]] virtual std::vector<BrowserCompanion> connected() const = 0;
  /// Called on the main executor when one has come or gone. One observer; an empty function ends it. [main]
  virtual void onChanged(std::function<void()> callback) = 0;
};

}  // namespace quillmere
