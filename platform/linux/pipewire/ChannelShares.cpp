#include "ChannelShares.h"

#include <spa/param/audio/raw.h>
#include <spa/param/audio/type-info.h>

#include <string_view>

namespace quillmere::pipewire {
namespace {

ChannelShare shareOf(std::uint32_t position, std::size_t place, float single) {
  switch (position) {
    case SPA_AUDIO_CHANNEL_FL:
    case SPA_AUDIO_CHANNEL_FLC:
      return leftShare;
    case SPA_AUDIO_CHANNEL_FR:
    case SPA_AUDIO_CHANNEL_FRC:
      return rightShare;
    case SPA_AUDIO_CHANNEL_MONO:
      return {single, single};
    case SPA_AUDIO_CHANNEL_FC:
    case SPA_AUDIO_CHANNEL_RC:
    case SPA_AUDIO_CHANNEL_TC:
    case SPA_AUDIO_CHANNEL_TFC:
    case SPA_AUDIO_CHANNEL_TRC:
      return bothSides;
    case SPA_AUDIO_CHANNEL_SL:
    case SPA_AUDIO_CHANNEL_RL:
    case SPA_AUDIO_CHANNEL_RLC:
    case SPA_AUDIO_CHANNEL_FLW:
    case SPA_AUDIO_CHANNEL_FLH:
    case SPA_AUDIO_CHANNEL_TFL:
    case SPA_AUDIO_CHANNEL_TRL:
    case SPA_AUDIO_CHANNEL_TSL:
      return {threeDecibelsDown, 0.0F};
    case SPA_AUDIO_CHANNEL_SR:
    case SPA_AUDIO_CHANNEL_RR:
    case SPA_AUDIO_CHANNEL_RRC:
    case SPA_AUDIO_CHANNEL_FRW:
    case SPA_AUDIO_CHANNEL_FRH:
    case SPA_AUDIO_CHANNEL_TFR:
    case SPA_AUDIO_CHANNEL_TRR:
    case SPA_AUDIO_CHANNEL_TSR:
      return {0.0F, threeDecibelsDown};
    case SPA_AUDIO_CHANNEL_LFE:
    case SPA_AUDIO_CHANNEL_LFE2:
    case SPA_AUDIO_CHANNEL_LLFE:
    case SPA_AUDIO_CHANNEL_RLFE:
      return {};
    default:
      return place % 2 == 0 ? leftShare : rightShare;
  }
}

}  // namespace

SingleChannelMix singleChannelMix(const LibraryVersion& version) {
  return version < LibraryVersion{0, 3, 66} ? SingleChannelMix{} : SingleChannelMix{1.0F, 0.5F};
}

std::vector<ChannelShare> channelShares(std::span<const std::uint32_t> positions, float single) {
  std::vector<ChannelShare> shares;
  shares.reserve(positions.size());
  for (const auto position : positions) shares.push_back(shareOf(position, shares.size(), single));
  return shares;
}

std::string channelName(std::uint32_t position) {
  for (const auto* entry = spa_type_audio_channel; entry->name != nullptr; ++entry) {
    if (entry->type != position) continue;
    const std::string_view name = entry->name;
    return std::string(name.substr(name.rfind(':') + 1));
  }
  return "UNK";
}

std::uint32_t channelPosition(std::string_view name) {
  for (const auto* entry = spa_type_audio_channel; entry->name != nullptr; ++entry) {
    const std::string_view full = entry->name;
    if (full.substr(full.rfind(':') + 1) == name) return entry->type;
  }
  return SPA_AUDIO_CHANNEL_UNKNOWN;
}

}  // namespace quillmere::pipewire
