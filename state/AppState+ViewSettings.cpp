// The two settings that belong to the views alone. They pass through no other store, and nothing is written unasked.
#include "platform/UserDefaults.h"
#include "runtime/Threads.h"
#include "state/AppState.h"

namespace quillmere {

namespace {
constexpr const char* scrollKey = "scrollOverRowAdjustsVolume";
constexpr const char* bannerKey = "showDuckBanner";
}  // namespace

void AppState::loadViewSettings() {
  // An absent value, or one of another type, counts as true.
  scrollOverRowAdjustsVolume_.set(machine_.defaults->boolean(scrollKey).value_or(true));
  showDuckBanner_.set(machine_.defaults->boolean(bannerKey).value_or(true));
}

void AppState::setScrollOverRowAdjustsVolume(bool adjusts) {
  QUILLMERE_CHECK_ON(runtime_.main, "setScrollOverRowAdjustsVolume off the main thread");
  if (scrollOverRowAdjustsVolume_.set(adjusts)) machine_.defaults->set(scrollKey, adjusts);
}

void AppState::setShowDuckBanner(bool shows) {
  QUILLMERE_CHECK_ON(runtime_.main, "setShowDuckBanner off the main thread");
  if (showDuckBanner_.set(shows)) machine_.defaults->set(bannerKey, shows);
}

}  // namespace quillmere
