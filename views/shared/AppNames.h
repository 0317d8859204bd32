// The names of applications for a page, looked up once and again only when they may have changed.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Observable.h"
#include "views/ViewServices.h"

namespace quillmere {

class AppDirectory;

/// [main] Names change when applications start or end, are installed or removed, and when the mixer lists others; not
/// when a level moves.
class AppNames {
 public:
  /// `changed` is called whenever names or the mixer's list of applications may be others.
  AppNames(const ViewServices& services, std::function<void()> changed);

  [[nodiscard]] const std::string& name(const std::string& bundleID);

 private:
  using Listed = std::vector<std::pair<std::string, std::string>>;
  [[nodiscard]] Listed listed() const;
  void forget();

  std::shared_ptr<MixerState> state_;
  AppDirectory& directory_;
  std::function<void()> changed_;
  /// Identifiers and names in the mixer.
  Listed listed_;
  std::map<std::string, std::string> names_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillmere
