// What each channel of an application contributes to the two that a tap hands to its block. Pure: [any].
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "LibraryVersion.h"

namespace quillmere::pipewire {

/// Linear gains into left and right.
struct ChannelShare {
  float left = 0.0F;
  float right = 0.0F;

  friend bool operator==(const ChannelShare&, const ChannelShare&) = default;
};

inline constexpr ChannelShare leftShare{1.0F, 0.0F};
inline constexpr ChannelShare rightShare{0.0F, 1.0F};
inline constexpr float threeDecibelsDown = 0.70710678F;
inline constexpr ChannelShare bothSides{threeDecibelsDown, threeDecibelsDown};
inline constexpr std::size_t mostChannels = 64;

/// Linear gains of a single channel into both sides, and of both sides into a single channel.
struct SingleChannelMix {
  float input = threeDecibelsDown;
  float output = threeDecibelsDown;
};

/// As the converters of a library of this version do it: up to 0.3.65 both come 3 dB down; later ones hand a single
/// channel on as it is, and make the average of two. [any]
[[nodiscard]] SingleChannelMix singleChannelMix(const LibraryVersion& version);

/// One for each position (`spa_audio_channel`), in their order. The centre, sides and rear come 3 dB down, as the
/// downward mixing of ITU-R BS.775 has it; a single channel goes into both sides by `single`; the low frequency effects
/// are left out. Channels without a position go left and right in turn. [any]
[[nodiscard]] std::vector<ChannelShare> channelShares(std::span<const std::uint32_t> positions, float single);

/// As the daemon and the session manager spell it in `audio.channel`, for instance "FL".
[[nodiscard]] std::string channelName(std::uint32_t position);
/// The other way round; `SPA_AUDIO_CHANNEL_UNKNOWN` for a name that is none.
[[nodiscard]] std::uint32_t channelPosition(std::string_view name);

}  // namespace quillmere::pipewire
