// Reading and writing the views' own keys.
#include "state/ViewSettings.h"

namespace quillmere {

ViewSettings::ViewSettings(UserDefaults& defaults)
    : defaults_(defaults),
      scrollOverRowAdjustsVolume_(defaults.boolean(scrollKey).value_or(true)),
      showDuckBanner_(defaults.boolean(bannerKey).value_or(true)) {}

void ViewSettings::setScrollOverRowAdjustsVolume(bool adjusts) {
  if (scrollOverRowAdjustsVolume_.set(adjusts)) defaults_.set(scrollKey, adjusts);
}

void ViewSettings::setShowDuckBanner(bool shows) {
  if (showDuckBanner_.set(shows)) defaults_.set(bannerKey, shows);
}

}  // namespace quillmere
