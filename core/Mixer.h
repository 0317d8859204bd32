// Pure gain arithmetic and the application of a profile to a list of applications.
#pragma once

#include <vector>

#include "core/AudioApp.h"
#include "core/Profile.h"

namespace quillmere {

struct Mixer {
  /// Limits a linear gain to 0..1. NaN gives 1.0 (IEEE 754 minNum with 1.0 comes first); -0.0 passes unchanged.
  [[nodiscard]] float clampGain(float gain) const;

  /// Equal-power crossfade: `from`*cos(angle) + `to`*sin(angle), angle = progress*pi/2, progress limited to 0..1;
  /// NaN counts as 1. The two constants are one unit in the last place below the floats nearest pi and pi/2.
  [[nodiscard]] float equalPowerFade(float from, float to, float progress) const;

  /// Each application of `apps`, in order, with gain, mute and route of the profile's entry of the same bundleID.
  /// Two profile entries with one bundleID stop the process with a message that names the key.
  [[nodiscard]] std::vector<AudioApp> apply(const Profile& profile, const std::vector<AudioApp>& apps) const;
};

}  // namespace quillmere
