// The names of applications for a page.
#include "views/shared/AppNames.h"

#include "integrations/AppDirectory.h"
#include "integrations/DesktopServices.h"
#include "state/MixerState.h"

namespace quillmere {

AppNames::AppNames(const ViewServices& services, std::function<void()> changed)
    : state_(services.state), directory_(services.desktop.apps()), changed_(std::move(changed)), listed_(listed()) {
  subscriptions_.push_back(directory_.revision().observe([this](const auto&) { forget(); }));
  subscriptions_.push_back(state_->apps().observe([this](const auto&) {
    if (auto now = listed(); now != listed_) {
      listed_ = std::move(now);
      forget();
    }
  }));
}

const std::string& AppNames::name(const std::string& bundleID) {
  const auto known = names_.find(bundleID);
  if (known != names_.end()) return known->second;
  return names_.emplace(bundleID, directory_.name(bundleID)).first->second;
}

AppNames::Listed AppNames::listed() const {
  Listed all;
  all.reserve(state_->apps()->size());
  for (const auto& app : *state_->apps()) all.emplace_back(app.bundleID, app.name);
  return all;
}

void AppNames::forget() {
  names_.clear();
  changed_();
}

}  // namespace quillmere
