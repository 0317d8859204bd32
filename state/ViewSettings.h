// The two settings that belong to the views alone.
#pragma once

#include "state/MixerState.h"

namespace quillmere {

/// [main] throughout.
class ViewSettings {
 public:
  /// `state` outlives this.
  explicit ViewSettings(MixerState& state) : state_(state) {}

  [[nodiscard]] const Observable<bool>& scrollOverRowAdjustsVolume() const {
    return state_.scrollOverRowAdjustsVolume();
  }
  [[nodiscard]] const Observable<bool>& showDuckBanner() const { return state_.showDuckBanner(); }
  void setScrollOverRowAdjustsVolume(bool adjusts) { state_.setScrollOverRowAdjustsVolume(adjusts); }
  void setShowDuckBanner(bool shows) { state_.setShowDuckBanner(shows); }

 private:
  MixerState& state_;
};

}  // namespace quillmere
