// Watches a steady tone at a device's monitor and tells when it changes, to the sample.
// monitor_probe SINK HZ: prints "steady" once the tone has been a sine for 0.2 s, then "changed NANOSECONDS" (monotonic
// clock) at the first sample that doesn't continue the sine, then "steady" again, and so on until it is ended.
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>

namespace {

constexpr std::uint32_t rateHz = 48000;
constexpr std::uint64_t steadyFrames = rateHz / 5;
/// Of full scale; a float tone continues itself within a tenth of this.
constexpr double tolerance = 2e-6;

struct Probe {
  pw_main_loop* loop = nullptr;
  pw_stream* stream = nullptr;
  /// 2 cos(w): a sine obeys x[n] = factor x[n-1] - x[n-2].
  double factor = 0;
  double last = 0;
  double before = 0;
  std::uint64_t steadyFor = 0;
  bool steady = false;
};

void take(Probe& probe, double sample, std::int64_t nanos) {
  const double error = std::abs(sample - (probe.factor * probe.last - probe.before));
  probe.before = probe.last;
  probe.last = sample;
  if (error > tolerance) {
    if (probe.steady) {
      std::printf("changed %lld\n", static_cast<long long>(nanos));
      std::fflush(stdout);
    }
    probe.steady = false;
    probe.steadyFor = 0;
    return;
  }
  // Silence continues itself too, but is no tone.
  if (std::abs(sample) < 1e-4 && probe.steadyFor == 0) return;
  if (++probe.steadyFor == steadyFrames) {
    probe.steady = true;
    std::printf("steady\n");
    std::fflush(stdout);
  }
}

void process(void* data) {
  auto& probe = *static_cast<Probe*>(data);
  pw_buffer* buffer = pw_stream_dequeue_buffer(probe.stream);
  if (buffer == nullptr) return;
  pw_time time{};
  pw_stream_get_time_n(probe.stream, &time, sizeof time);
  const spa_data& plane = buffer->buffer->datas[0];
  const auto* samples = reinterpret_cast<const float*>(static_cast<const std::uint8_t*>(plane.data) +
                                                       (plane.chunk != nullptr ? plane.chunk->offset : 0));
  const std::uint32_t count = plane.chunk != nullptr ? plane.chunk->size / sizeof(float) : 0;
  for (std::uint32_t index = 0; index < count; ++index) {
    take(probe, static_cast<double>(samples[index]), time.now + std::int64_t{index} * 1'000'000'000 / rateHz);
  }
  pw_stream_queue_buffer(probe.stream, buffer);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: monitor_probe SINK HZ\n");
    return 64;
  }
  pw_init(&argc, &argv);
  Probe probe;
  probe.factor = 2 * std::cos(2 * std::numbers::pi * std::atof(argv[2]) / rateHz);
  probe.loop = pw_main_loop_new(nullptr);

  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.process = process;
  pw_properties* properties = pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture",
                                                PW_KEY_NODE_NAME, "quillmere-test-probe", PW_KEY_STREAM_CAPTURE_SINK,
                                                "true", PW_KEY_TARGET_OBJECT, argv[1], nullptr);
  probe.stream =
      pw_stream_new_simple(pw_main_loop_get_loop(probe.loop), "quillmere-test-probe", properties, &events, &probe);

  std::array<std::uint8_t, 1024> space{};
  spa_pod_builder builder = SPA_POD_BUILDER_INIT(space.data(), space.size());
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.rate = rateHz;
  info.channels = 1;
  info.position[0] = SPA_AUDIO_CHANNEL_FL;
  const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
  const auto flags =
      static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS);
  if (pw_stream_connect(probe.stream, PW_DIRECTION_INPUT, PW_ID_ANY, flags, &format, 1) < 0) return 1;
  pw_main_loop_run(probe.loop);
  pw_stream_destroy(probe.stream);
  pw_main_loop_destroy(probe.loop);
  pw_deinit();
  return 0;
}
