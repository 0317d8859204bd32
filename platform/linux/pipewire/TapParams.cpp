#include "TapParams.h"

#include <spa/buffer/buffer.h>
#include <spa/node/io.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/latency-utils.h>
#include <spa/param/param.h>
#include <spa/pod/builder.h>
#include <spa/pod/parser.h>

#include "TapRealtime.h"

namespace quillmere::pipewire::params {
namespace {

constexpr std::int32_t longestCycle = 8192;

const spa_pod* pod(void* built) { return static_cast<const spa_pod*>(built); }

}  // namespace

const spa_pod* stereoFormat(spa_pod_builder& builder, std::uint32_t rate) {
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.rate = rate;
  info.channels = 2;
  info.position[0] = SPA_AUDIO_CHANNEL_FL;
  info.position[1] = SPA_AUDIO_CHANNEL_FR;
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

bool configuresInputs(const spa_pod* portConfig) {
  std::uint32_t direction = 0;
  return portConfig != nullptr &&
         spa_pod_parse_object(portConfig, SPA_TYPE_OBJECT_ParamPortConfig, nullptr, SPA_PARAM_PORT_CONFIG_direction,
                              SPA_POD_Id(&direction)) >= 0 &&
         direction == SPA_DIRECTION_INPUT;
}

}  // namespace quillmere::pipewire::params
