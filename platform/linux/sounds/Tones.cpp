// Bell-like tones: partials that ring out at their own pace.
#include "sounds/Tones.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace quillmere::sounds {
namespace {

struct Partial {
  double frequencyHz;
  double amplitude;
  /// Time in which the partial falls to 1/e, in seconds.
  double decaySeconds;
  double startSeconds;
};

constexpr double peak = 0.251188643150958;  // -12 dB
constexpr double attackSeconds = 0.004;
constexpr double releaseSeconds = 0.06;

/// A struck glass: one high note with the stretched overtones of a bowl.
constexpr Partial glass[] = {
    {1567.98, 1.00, 0.22, 0.0},
    {3151.64, 0.42, 0.13, 0.0},
    {4750.98, 0.20, 0.08, 0.0},
    {7431.0, 0.08, 0.04, 0.0},
};

/// A rising fourth on two warm notes.
constexpr Partial hero[] = {
    {523.25, 1.00, 0.20, 0.0},  {1046.50, 0.35, 0.12, 0.0},  {1569.75, 0.12, 0.08, 0.0},
    {698.46, 1.00, 0.26, 0.14}, {1396.91, 0.35, 0.16, 0.14}, {2095.38, 0.12, 0.10, 0.14},
};

/// Half a cosine from 0 to 1.
double ramp(double progress) { return 0.5 - 0.5 * std::cos(std::numbers::pi * std::clamp(progress, 0.0, 1.0)); }

std::vector<float> synthesise(std::span<const Partial> partials, double seconds) {
  const auto count = static_cast<std::size_t>(seconds * sampleRateHz);
  std::vector<double> samples(count, 0.0);
  for (const auto& partial : partials) {
    for (std::size_t index = 0; index < count; ++index) {
      const double time = static_cast<double>(index) / sampleRateHz - partial.startSeconds;
      if (time <= 0.0) continue;
      samples[index] += partial.amplitude * ramp(time / attackSeconds) * std::exp(-time / partial.decaySeconds) *
                        std::sin(2.0 * std::numbers::pi * partial.frequencyHz * time);
    }
  }
  double highest = 0.0;
  for (std::size_t index = 0; index < count; ++index) {
    const double left = static_cast<double>(count - 1 - index) / sampleRateHz;
    samples[index] *= ramp(left / releaseSeconds);
    highest = std::max(highest, std::abs(samples[index]));
  }
  std::vector<float> tone(count);
  std::ranges::transform(samples, tone.begin(),
                         [&](double sample) { return static_cast<float>(sample * peak / highest); });
  return tone;
}

}  // namespace

std::vector<float> tone(std::string_view name) {
  if (name == "Glass") return synthesise(glass, 0.7);
  if (name == "Hero") return synthesise(hero, 0.8);
  return {};
}

}  // namespace quillmere::sounds
