// What the tests of taps listen for at a device's monitor.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "support/MonitorRecorder.h"

namespace quillmere::test {

/// What the signal player's constant is heard at, at a linear gain of one.
inline constexpr float signalLevel = 0.5F;

// What one frame of the 30 ms glide over the whole range does to that constant, and a little for rounding.
inline constexpr float glideStep = signalLevel / (48000.0F * 0.03F) * 1.05F;

/// The level of the signal player's constant, within 0.05 dB of a gain.
[[nodiscard]] ::testing::AssertionResult levelIs(const MonitorRecorder& monitor, float gain);

/// The largest step between two samples that are not silence.
[[nodiscard]] float largestStep(const std::vector<float>& samples);

}  // namespace quillmere::test
