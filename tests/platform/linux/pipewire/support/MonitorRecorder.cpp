#include "support/MonitorRecorder.h"

#include <pipewire/pipewire.h>
#include <spa/pod/builder.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <stdexcept>

#include "platform/linux/pipewire/ClientConfiguration.h"
#include "platform/linux/pipewire/TapParams.h"
#include "support/Session.h"

namespace quillmere::test {
namespace {

// Ten minutes at 48 kHz.
constexpr std::size_t capacity = 48000UL * 600;

}  // namespace

struct MonitorRecorder::Recording {
  pw_thread_loop* loop = nullptr;
  pw_stream* stream = nullptr;
  std::vector<float> samples;
  std::atomic<std::size_t> count{0};

  static void onProcess(void* data) {
    auto& self = *static_cast<Recording*>(data);
    while (auto* buffer = pw_stream_dequeue_buffer(self.stream)) {
      const auto& from = buffer->buffer->datas[0];
      const auto* values = reinterpret_cast<const float*>(static_cast<const std::byte*>(from.data) +
                                                          std::min(from.chunk->offset, from.maxsize));
      const auto frames = std::min<std::size_t>(from.chunk->size / sizeof(float), capacity - self.count);
      std::copy_n(values, frames, self.samples.begin() + static_cast<std::ptrdiff_t>(self.count.load()));
      self.count += frames;
      pw_stream_queue_buffer(self.stream, buffer);
    }
  }
};

MonitorRecorder::MonitorRecorder(const std::string& device, const std::string& latency, Linked linked)
    : recording_(std::make_unique<Recording>()) {
  pw_init(nullptr, nullptr);
  recording_->samples.resize(capacity);
  recording_->loop = pw_thread_loop_new("recorder", nullptr);
  static const auto events = [] {
    pw_stream_events made{};
    made.version = PW_VERSION_STREAM_EVENTS;
    made.process = &Recording::onProcess;
    return made;
  }();
  pw_thread_loop_start(recording_->loop);
  pw_thread_loop_lock(recording_->loop);
  recording_->stream = pw_stream_new_simple(
      pw_thread_loop_get_loop(recording_->loop), "recorder",
      pw_properties_new(PW_KEY_CONFIG_NAME, pipewire::realTimeConfiguration(pw_get_library_version()),
                        PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_TARGET_OBJECT,
                        device.c_str(), PW_KEY_STREAM_CAPTURE_SINK, "true", PW_KEY_NODE_LATENCY, latency.c_str(),
                        PW_KEY_NODE_DONT_RECONNECT, "true", PW_KEY_NODE_NAME,
                        linked == Linked::byHand ? "recorder-by-hand" : "recorder", nullptr),
      &events, recording_.get());
  if (recording_->stream == nullptr) throw std::runtime_error("no daemon to record from");
  std::array<std::uint8_t, 1024> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  std::array<const spa_pod*, 1> formats{pipewire::params::stereoFormat(builder, 48000)};
  const auto flags = static_cast<std::uint32_t>(PW_STREAM_FLAG_MAP_BUFFERS) | PW_STREAM_FLAG_RT_PROCESS |
                     (linked == Linked::bySessionManager ? PW_STREAM_FLAG_AUTOCONNECT : 0);
  pw_stream_connect(recording_->stream, PW_DIRECTION_INPUT, PW_ID_ANY, static_cast<pw_stream_flags>(flags),
                    formats.data(), formats.size());
  pw_thread_loop_unlock(recording_->loop);
  const auto hears = [&] {
    if (linked == Linked::byHand) run({"pw-link", device + ":monitor_FL", "recorder-by-hand:input_FL"});
    return size() > 0;
  };
  if (!eventually(hears)) throw std::runtime_error("nothing can be recorded from " + device);
}

MonitorRecorder::~MonitorRecorder() {
  pw_thread_loop_lock(recording_->loop);
  pw_stream_destroy(recording_->stream);
  pw_thread_loop_unlock(recording_->loop);
  pw_thread_loop_stop(recording_->loop);
  pw_thread_loop_destroy(recording_->loop);
}

std::size_t MonitorRecorder::size() const { return recording_->count.load(); }

std::vector<float> MonitorRecorder::samples(std::size_t first) const {
  const auto end = recording_->samples.begin() + static_cast<std::ptrdiff_t>(size());
  return {recording_->samples.begin() + static_cast<std::ptrdiff_t>(std::min(first, size())), end};
}

float MonitorRecorder::nextPeak(std::size_t frames) const {
  const auto first = size();
  eventually([&] { return size() >= first + frames; });
  float peak = 0.0F;
  for (const float value : samples(first)) peak = std::max(peak, std::fabs(value));
  return peak;
}

}  // namespace quillmere::test
