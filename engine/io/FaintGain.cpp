#include "io/FaintGain.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "io/SteadyGain.h"

namespace quillmere::io {
namespace {

constexpr std::uint32_t signBit = 0x80000000U;
constexpr std::uint32_t leastNormal = 0x00800000U;
constexpr float up = 0x1p64F;
constexpr float down = 0x1p-64F;
/// 2^-126 and 2^-149, times 2^64: the least number that is not denormal, and the step from one denormal to the next.
constexpr float scaledLeastNormal = 0x1p-62F;
constexpr float scaledUnit = 0x1p-85F;

std::uint32_t bitsOf(float value) { return std::bit_cast<std::uint32_t>(value); }
std::uint32_t magnitudeOf(float value) { return bitsOf(value) & ~signBit; }

/// A faint gain times 2^64. A denormal one is a number of units, and is taken as that whole number.
float scaledUp(float gain) {
  const std::uint32_t magnitude = magnitudeOf(gain);
  const float scaled = magnitude < leastNormal ? static_cast<float>(static_cast<std::int32_t>(magnitude)) * scaledUnit
                                               : std::bit_cast<float>(magnitude) * up;
  return std::bit_cast<float>(bitsOf(scaled) | (bitsOf(gain) & signBit));
}

/// The way back, for gains that are not negative.
float scaledDown(float scaled) {
  if (scaled >= scaledLeastNormal) return scaled * down;
  return std::bit_cast<float>(static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled * (1.0F / scaledUnit))));
}

/// A number, or a zero of its sign where its magnitude is below a limit. What is no number is beyond every limit.
float atLeast(float value, float limit) {
  const std::uint32_t keep = magnitudeOf(value) >= bitsOf(limit) ? ~0U : signBit;
  return std::bit_cast<float>(bitsOf(value) & keep);
}

/// A power of two: its product with the gain, and that of every smaller number, is denormal or zero, and not by a hair;
/// that of every larger one is an ordinary number when the gain is scaled.
float loudestUnheard(float scaledGain) {
  return std::bit_cast<float>(((63U + 127U) << 23U) - (magnitudeOf(scaledGain) & 0x7F800000U));
}

/// The product of a sample with a faint gain.
float faintly(float scaledGain, float sample) {
  const float product = scaledGain * atLeast(sample, loudestUnheard(scaledGain));
  // The number just below the least ordinary one is on the edge, where a product of more places would have been rounded
  // up: it is left to the last multiplication, which does that.
  return atLeast(product, std::bit_cast<float>(bitsOf(scaledLeastNormal) - 1)) * down;
}

float larger(float peak, float sample) {
  const float magnitude = std::fabs(sample);
  return magnitude > peak ? magnitude : peak;
}

float multiplyFaintly(const float* input, float* output, std::size_t count, float scaledGain, float peak) {
  for (std::size_t i = 0; i < count; ++i) {
    const float sample = input[i];
    peak = larger(peak, sample);
    output[i] = faintly(scaledGain, sample);
  }
  return peak;
}

/// One step of the glide, both gains scaled. The product is rounded as the formula's is where that is denormal: to
/// whole units, which are the last place of `rounding` in double precision; both sums with it are on that grid, the
/// gain's without being rounded. Double precision also holds the product as it is.
float stepDown(float scaledGain, float coefficient) {
  constexpr double rounding = 0x1.8p-33;
  const double gain = scaledGain;
  const double product = gain * static_cast<double>(coefficient);
  return static_cast<float>((gain + rounding) - (product + rounding));
}

}  // namespace

bool isFaint(float gain) {
  const std::uint32_t magnitude = magnitudeOf(gain);
  return magnitude != 0 && magnitude < bitsOf(down);
}

float steadyFaintGain(const float* input, float* output, std::size_t count, float gain, float peak) {
  const float scaled = scaledUp(gain);
  // Nothing is left of what is up to full scale, and far beyond: a gain of zero gives the same at the usual price.
  if (input != output) {
    const float loudest = steadyGain(input, output, count, std::bit_cast<float>(bitsOf(gain) & signBit), 0.0F);
    if (loudest <= loudestUnheard(scaled)) return std::max(peak, loudest);
  }
  return multiplyFaintly(input, output, count, scaled, peak);
}

Fade fadeFaint(const float* input, float* output, std::size_t frames, float gain, float coefficient, float peak) {
  float scaled = scaledUp(gain);
  std::size_t frame = 0;
  // The step's product is an ordinary number: the formula as it stands.
  for (; frame < frames && scaled * coefficient >= scaledLeastNormal; ++frame) {
    scaled -= scaled * coefficient;
    peak = multiplyFaintly(input + 2 * frame, output + 2 * frame, 2, scaled, peak);
  }
  for (; frame < frames; ++frame) {
    const float next = stepDown(scaled, coefficient);
    if (next == scaled) break;
    scaled = next;
    peak = multiplyFaintly(input + 2 * frame, output + 2 * frame, 2, scaled, peak);
  }
  return {scaledDown(scaled), peak, frame};
}

}  // namespace quillmere::io
