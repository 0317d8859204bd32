// Reading and writing the views' own keys.
#include "state/ViewSettings.h"

#include "runtime/Threads.h"

namespace quillmere {

ViewSettings::ViewSettings(UserDefaults& defaults)
    : defaults_(defaults),
      scrollOverRowAdjustsVolume_(defaults.boolean(scrollKey).value_or(true)),
      showDuckBanner_(defaults.boolean(bannerKey).value_or(true)) {}

void ViewSettings::setScrollOverRowAdjustsVolume(bool adjusts) {
  QUILLMERE_CHECK_ON(home_, "a setting of the views is changed off the main thread");
  if (scrollOverRowAdjustsVolume_.set(adjusts)) defaults_.set(scrollKey, adjusts);
}

void ViewSettings::setShowDuckBanner(bool shows) {
  QUILLMERE_CHECK_ON(home_, "a setting of the views is changed off the main thread");
  if (showDuckBanner_.set(shows)) defaults_.set(bannerKey, shows);
}

}  // namespace quillmere
