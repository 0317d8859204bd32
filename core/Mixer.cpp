// Gain arithmetic in single precision, to the last bit.
#include "core/Mixer.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

namespace quillmere {

namespace {

// Not the floats nearest pi and pi/2: existing layouts were made with these.
constexpr float almostPi = std::bit_cast<float>(std::uint32_t{0x40490FDA});
constexpr float almostHalfPi = std::bit_cast<float>(std::uint32_t{0x3FC90FDA});

}  // namespace

float Mixer::clampGain(float gain) const {
  const float limited = std::fmin(gain, 1.0F);
  return limited >= 0.0F ? limited : 0.0F;
}

float Mixer::equalPowerFade(float from, float to, float progress) const {
  float angle = almostHalfPi;
  if (progress < 1.0F) angle = (progress > 0.0F ? progress : 0.0F) * almostPi * 0.5F;
  return from * std::cos(angle) + to * std::sin(angle);
}

std::vector<AudioApp> Mixer::apply(const Profile& profile, const std::vector<AudioApp>& apps) const {
  std::unordered_map<std::string_view, const AudioApp*> saved;
  for (const auto& app : profile.apps) {
    if (saved.emplace(app.bundleID, &app).second) continue;
    std::fprintf(stderr, "quillmere: precondition failed: duplicate key in a profile: \"%s\"\n", app.bundleID.c_str());
    std::fflush(stderr);
    std::abort();
  }
  std::vector<AudioApp> result = apps;
  for (auto& app : result) {
    const auto entry = saved.find(app.bundleID);
    if (entry == saved.end()) continue;
    app.gain = entry->second->gain;
    app.muted = entry->second->muted;
    app.routedDeviceUID = entry->second->routedDeviceUID;
  }
  return result;
}

}  // namespace quillmere
