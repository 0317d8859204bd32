// The program's two short sounds, computed.
// Pure functions of the name and the sample rate: [any].
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace quillmere::sounds {

inline constexpr std::uint32_t sampleRateHz = 48000;

/// Mono samples, -1 to 1, of "Glass" or "Hero"; empty for any other name. Less than a second long, begins and ends in
/// silence, peaks at -12 dB of full scale.
[[nodiscard]] std::vector<float> tone(std::string_view name);

}  // namespace quillmere::sounds
