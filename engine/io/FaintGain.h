// Gains that are next to nothing, which is where the glide to silence ends: the products with them are denormal
// numbers, and on many processors each of those costs as much as a hundred others. The glide passes through that range
// for a second and rests in it for as long as an application is muted.
//
// No operation here takes or gives a denormal number. The gain is kept times 2^64, where it is an ordinary number, and
// takes the steps of the formula to the last bit. Of the samples, what is not denormal by the formula has the formula's
// bits; what would be, and is no sound that anything could play, becomes a zero of the same sign.
#pragma once

#include <cstddef>

#include "runtime/Threads.h"

namespace quillmere::io {

/// Whether the magnitude of a linear gain is below 2^-64 and not 0. [audio]
[[nodiscard]] QUILLMERE_REALTIME bool isFaint(float gain);

/// As `steadyGain`, for a faint gain. [audio]
QUILLMERE_REALTIME float steadyFaintGain(const float* input, float* output, std::size_t count, float gain, float peak);

struct Fade {
  /// The linear gain of the last frame.
  float gain = 0.0F;
  float peak = 0.0F;
  /// How many were done; fewer than wanted where the gain has come to rest.
  std::size_t frames = 0;
};

/// Interleaved stereo frames with a faint positive gain that glides to 0: g + (0 - g) * c before each frame. `peak` is
/// the largest of the one given and the samples' magnitudes, as in `steadyGain`, which also tells what memory may be
/// the same. `coefficient` is between 2^-30 and 1. [audio]
QUILLMERE_REALTIME Fade fadeFaint(const float* input, float* output, std::size_t frames, float gain, float coefficient,
                                  float peak);

}  // namespace quillmere::io
