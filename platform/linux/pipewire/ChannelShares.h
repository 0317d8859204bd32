// What each channel of an application contributes to the two that a tap hands to its block. Pure: [any].
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

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

/// One for each position (`spa_audio_channel`), in their order. The centre, sides and rear come 3 dB down, as the
/// downward mixing of ITU-R BS.775 has it, and so does a single channel, as the daemon's own converters have it; the
/// low frequency effects are left out. Channels without a position go left and right in turn.
[[nodiscard]] std::vector<ChannelShare> channelShares(std::span<const std::uint32_t> positions);

/// As the daemon and the session manager spell it in `audio.channel`, for instance "FL".
[[nodiscard]] std::string channelName(std::uint32_t position);
/// The positions of channels by their names; stereo where there are none, too many, or one has no position.
[[nodiscard]] std::vector<std::uint32_t> channelPositions(std::span<const std::string> names);

}  // namespace quillmere::pipewire
