// Profiles: the whole list saved under a name, changed, copied, and brought back.
#include <algorithm>
#include <utility>

#include "core/Mixer.h"
#include "core/Texts.h"
#include "runtime/Threads.h"
#include "state/AppState.h"
#include "state/SettingsStore.h"

namespace quillmere {

void AppState::addProfile(std::string name) {
  QUILLMERE_CHECK_ON(runtime_.main, "addProfile off the main thread");
  profiles_.modify([&](auto& profiles) {
    profiles.push_back({Uuid::random(), std::move(name), *apps_, std::nullopt, runtime_.clocks.now()});
  });
  store_->persistProfiles(*profiles_);
}

void AppState::deleteProfile(Uuid id) {
  QUILLMERE_CHECK_ON(runtime_.main, "deleteProfile off the main thread");
  profiles_.modify([&](auto& profiles) { std::erase_if(profiles, [&](const auto& each) { return each.id == id; }); });
  if (*activeProfileID_ == id) activeProfileID_.set(std::nullopt);
  store_->persistProfiles(*profiles_);
  store_->persistActiveProfile(*activeProfileID_);
}

void AppState::updateProfile(Profile profile) {
  QUILLMERE_CHECK_ON(runtime_.main, "updateProfile off the main thread");
  auto profiles = profiles_.get();
  const auto entry = std::ranges::find(profiles, profile.id, &Profile::id);
  if (entry == profiles.end()) return;
  *entry = std::move(profile);
  entry->updatedAt = runtime_.clocks.now();
  profiles_.set(std::move(profiles));
  store_->persistProfiles(*profiles_);
}

void AppState::duplicateProfile(Uuid id) {
  QUILLMERE_CHECK_ON(runtime_.main, "duplicateProfile off the main thread");
  auto profiles = profiles_.get();
  const auto source = std::ranges::find(profiles, id, &Profile::id);
  if (source == profiles.end()) return;
  auto copy = *source;
  copy.id = Uuid::random();
  copy.name = translated("%1 Copy", source->name);
  copy.updatedAt = runtime_.clocks.now();
  profiles.push_back(std::move(copy));
  profiles_.set(std::move(profiles));
  store_->persistProfiles(*profiles_);
}

void AppState::applyProfile(Uuid id) {
  QUILLMERE_CHECK_ON(runtime_.main, "applyProfile off the main thread");
  const auto profile = std::ranges::find(*profiles_, id, &Profile::id);
  if (profile == profiles_->end()) return;
  apps_.set(Mixer().apply(*profile, *apps_));
  activeProfileID_.set(id);
  store_->persistProfiles(*profiles_);
  store_->persistActiveProfile(*activeProfileID_);
  store_->persistAppsState(*apps_);
  // The plain gain, of a muted application too; no route is sent: the list and the sound part here.
  for (const auto& app : *apps_) sendGain(app.gain, app.bundleID);
}

}  // namespace quillmere
