#include "TapParams.h"

#include <spa/buffer/buffer.h>
#include <spa/node/io.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/latency-utils.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>
#include <spa/pod/parser.h>

#include <algorithm>

#include "ChannelShares.h"
#include "TapRealtime.h"

namespace quillmere::pipewire::params {
namespace {

constexpr std::int32_t longestCycle = 8192;

const spa_pod* pod(void* built) { return static_cast<const spa_pod*>(built); }

}  // namespace

const spa_pod* nodeFormat(spa_pod_builder& builder, std::span<const std::uint32_t> positions) {
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.rate = 48000;
  info.channels = static_cast<std::uint32_t>(std::min(positions.size(), std::size(info.position)));
  std::copy_n(positions.begin(), info.channels, std::begin(info.position));
  return spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
}

const spa_pod* portFormat(spa_pod_builder& builder) {
  return pod(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
                                        SPA_POD_Id(SPA_MEDIA_TYPE_audio), SPA_FORMAT_mediaSubtype,
                                        SPA_POD_Id(SPA_MEDIA_SUBTYPE_dsp), SPA_FORMAT_AUDIO_format,
                                        SPA_POD_Id(SPA_AUDIO_FORMAT_DSP_F32)));
}

const spa_pod* portIO(spa_pod_builder& builder) {
  return pod(spa_pod_builder_add_object(&builder, SPA_TYPE_OBJECT_ParamIO, SPA_PARAM_IO, SPA_PARAM_IO_id,
                                        SPA_POD_Id(SPA_IO_Buffers), SPA_PARAM_IO_size,
                                        SPA_POD_Int(static_cast<std::int32_t>(sizeof(spa_io_buffers)))));
}

const spa_pod* portBuffers(spa_pod_builder& builder) {
  constexpr auto bytes = longestCycle * static_cast<std::int32_t>(sizeof(float));
  constexpr auto most = static_cast<std::int32_t>(TapPort::mostBuffers);
  return pod(spa_pod_builder_add_object(
      &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
      SPA_POD_CHOICE_RANGE_Int(1, 1, most), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_size,
      SPA_POD_CHOICE_STEP_Int(bytes, static_cast<std::int32_t>(sizeof(float)), bytes,
                              static_cast<std::int32_t>(sizeof(float))),
      SPA_PARAM_BUFFERS_stride, SPA_POD_Int(static_cast<std::int32_t>(sizeof(float)))));
}

const spa_pod* latency(spa_pod_builder& builder, const spa_latency_info& info) {
  return spa_latency_build(&builder, SPA_PARAM_Latency, &info);
}

bool isPortFormat(const spa_pod* format) {
  std::uint32_t type = 0;
  std::uint32_t subtype = 0;
  std::uint32_t samples = 0;
  return format != nullptr && spa_format_parse(format, &type, &subtype) >= 0 && type == SPA_MEDIA_TYPE_audio &&
         subtype == SPA_MEDIA_SUBTYPE_dsp &&
         spa_pod_parse_object(format, SPA_TYPE_OBJECT_Format, nullptr, SPA_FORMAT_AUDIO_format, SPA_POD_Id(&samples)) >=
             0 &&
         samples == SPA_AUDIO_FORMAT_DSP_F32;
}

std::optional<std::vector<std::uint32_t>> wantedInputs(const spa_pod* portConfig) {
  std::uint32_t direction = 0;
  std::uint32_t mode = 0;
  const spa_pod* format = nullptr;
  if (portConfig == nullptr ||
      spa_pod_parse_object(portConfig, SPA_TYPE_OBJECT_ParamPortConfig, nullptr, SPA_PARAM_PORT_CONFIG_direction,
                           SPA_POD_Id(&direction), SPA_PARAM_PORT_CONFIG_mode, SPA_POD_Id(&mode),
                           SPA_PARAM_PORT_CONFIG_format, SPA_POD_OPT_Pod(&format)) < 0 ||
      direction != SPA_DIRECTION_INPUT) {
    return std::nullopt;
  }
  if (mode == SPA_PARAM_PORT_CONFIG_MODE_none) return std::vector<std::uint32_t>{};
  spa_audio_info_raw info{};
  if (format == nullptr || spa_format_audio_raw_parse(format, &info) < 0 || info.channels == 0) {
    return std::vector<std::uint32_t>{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR};
  }
  const auto count = std::min<std::size_t>(info.channels, mostChannels);
  return std::vector<std::uint32_t>(std::begin(info.position), std::begin(info.position) + static_cast<long>(count));
}

}  // namespace quillmere::pipewire::params
