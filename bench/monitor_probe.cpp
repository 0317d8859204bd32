// Watches a steady tone at a device's monitor, and at whatever else is linked to it, and tells when it changes.
// monitor_probe SINK HZ: prints "PLACE steady" once the tone has been a sine for 0.2 s, then "PLACE changed
// NANOSECONDS" at the first sample that doesn't continue the sine, then "PLACE steady" again, and so on until it is
// ended. The moment is that at which the sample was handed over (monotonic clock), and its place among those that came
// with it. PLACE is "monitor", and "link" for the node quillmere-bench-link, which nothing is linked to by itself. What
// comes out of a node of the graph is seen there in the cycle in which it is made, at a monitor only in the next.
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <string>

namespace {

constexpr std::uint32_t rateHz = 48000;
constexpr std::uint64_t steadyFrames = rateHz / 5;
/// Of full scale; a float tone continues itself within a tenth of this.
constexpr double tolerance = 2e-6;

struct Probe {
  const char* place = "";
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
      std::printf("%s changed %lld\n", probe.place, static_cast<long long>(nanos));
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
    std::printf("%s steady\n", probe.place);
    std::fflush(stdout);
  }
}

void process(void* data) {
  auto& probe = *static_cast<Probe*>(data);
  pw_buffer* buffer = pw_stream_dequeue_buffer(probe.stream);
  if (buffer == nullptr) return;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto start = std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
  const spa_data& plane = buffer->buffer->datas[0];
  const auto* samples = reinterpret_cast<const float*>(static_cast<const std::uint8_t*>(plane.data) +
                                                       (plane.chunk != nullptr ? plane.chunk->offset : 0));
  const std::uint32_t count = plane.chunk != nullptr ? plane.chunk->size / sizeof(float) : 0;
  for (std::uint32_t index = 0; index < count; ++index) {
    take(probe, static_cast<double>(samples[index]), start + std::int64_t{index} * 1'000'000'000 / rateHz);
  }
  pw_stream_queue_buffer(probe.stream, buffer);
}

/// One channel, of a device's monitor or of nothing.
bool connect(Probe& probe, pw_loop* loop, const char* name, const char* sink) {
  static const auto events = [] {
    pw_stream_events made{};
    made.version = PW_VERSION_STREAM_EVENTS;
    made.process = process;
    return made;
  }();
  pw_properties* properties =
      pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_NODE_NAME, name, nullptr);
  if (sink != nullptr) {
    pw_properties_set(properties, PW_KEY_STREAM_CAPTURE_SINK, "true");
    pw_properties_set(properties, PW_KEY_TARGET_OBJECT, sink);
  }
  probe.stream = pw_stream_new_simple(loop, name, properties, &events, &probe);

  std::array<std::uint8_t, 1024> space{};
  spa_pod_builder builder = SPA_POD_BUILDER_INIT(space.data(), space.size());
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.rate = rateHz;
  info.channels = 1;
  info.position[0] = SPA_AUDIO_CHANNEL_FL;
  const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
  auto flags = PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS;
  if (sink != nullptr) flags |= PW_STREAM_FLAG_AUTOCONNECT;
  return pw_stream_connect(probe.stream, PW_DIRECTION_INPUT, PW_ID_ANY, static_cast<pw_stream_flags>(flags), &format,
                           1) >= 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: monitor_probe SINK HZ\n");
    return 64;
  }
  pw_init(&argc, &argv);
  pw_main_loop* loop = pw_main_loop_new(nullptr);
  Probe monitor;
  Probe linked;
  monitor.place = "monitor";
  linked.place = "link";
  monitor.factor = linked.factor = 2 * std::cos(2 * std::numbers::pi * std::atof(argv[2]) / rateHz);
  if (!connect(monitor, pw_main_loop_get_loop(loop), "quillmere-bench-monitor", argv[1]) ||
      !connect(linked, pw_main_loop_get_loop(loop), "quillmere-bench-link", nullptr)) {
    return 1;
  }
  pw_main_loop_run(loop);
  pw_stream_destroy(monitor.stream);
  pw_stream_destroy(linked.stream);
  pw_main_loop_destroy(loop);
  pw_deinit();
  return 0;
}
