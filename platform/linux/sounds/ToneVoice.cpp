// A short-lived PipeWire stream.
#include "sounds/ToneVoice.h"

#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#include "sounds/Tones.h"

namespace quillmere::sounds {

/// All callbacks come on the thread of `loop`.
struct ToneVoice::Fields {
  std::vector<float> samples;
  std::size_t played = 0;
  bool isDraining = false;
  bool hasEnded = false;
  bool isStarted = false;
  std::function<void()> onEnd;
  pw_thread_loop* loop = nullptr;
  pw_stream* stream = nullptr;

  void end() {
    if (!std::exchange(hasEnded, true) && isStarted) onEnd();
  }

  static void process(void* data) {
    auto& self = *static_cast<Fields*>(data);
    pw_buffer* buffer = pw_stream_dequeue_buffer(self.stream);
    if (buffer == nullptr) return;
    spa_data& plane = buffer->buffer->datas[0];
    auto* out = static_cast<float*>(plane.data);
    std::size_t frames = out == nullptr ? 0 : plane.maxsize / sizeof(float);
    if (buffer->requested > 0) frames = std::min<std::size_t>(frames, buffer->requested);
    const auto count = std::min(frames, self.samples.size() - self.played);
    std::copy_n(self.samples.data() + self.played, count, out);
    std::fill_n(out + count, frames - count, 0.0F);
    self.played += count;
    plane.chunk->offset = 0;
    plane.chunk->stride = sizeof(float);
    plane.chunk->size = static_cast<std::uint32_t>(frames * sizeof(float));
    pw_stream_queue_buffer(self.stream, buffer);
    if (self.played < self.samples.size() || self.isDraining) return;
    self.isDraining = true;
    pw_stream_flush(self.stream, true);
  }

  static void stateChanged(void* data, pw_stream_state, pw_stream_state state, const char*) {
    if (state == PW_STREAM_STATE_ERROR) static_cast<Fields*>(data)->end();
  }

  static void drained(void* data) { static_cast<Fields*>(data)->end(); }
};

namespace {

pw_properties* propertiesOf(const std::string& remote) {
  auto* properties =
      pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback", PW_KEY_MEDIA_ROLE,
                        "Notification", PW_KEY_NODE_NAME, "app.quillmere.sound", PW_KEY_NODE_DESCRIPTION, "Quillmere",
                        PW_KEY_MEDIA_NAME, "Notification", PW_KEY_APP_ID, "app.quillmere.host", PW_KEY_APP_NAME,
                        "Quillmere", "state.restore-props", "false", "state.restore-target", "false", nullptr);
  if (!remote.empty()) pw_properties_set(properties, PW_KEY_REMOTE_NAME, remote.c_str());
  return properties;
}

}  // namespace

ToneVoice::ToneVoice(std::vector<float> samples, const std::string& remote, std::function<void()> onEnd)
    : fields_(std::make_unique<Fields>()) {
  static const pw_stream_events events = [] {
    pw_stream_events made{};
    made.version = PW_VERSION_STREAM_EVENTS;
    made.state_changed = Fields::stateChanged;
    made.process = Fields::process;
    made.drained = Fields::drained;
    return made;
  }();
  // A new context asks the system's user database in a way that bears one caller at a time.
  static std::mutex oneAtATime;
  const std::lock_guard lock(oneAtATime);
  pw_init(nullptr, nullptr);
  auto& self = *fields_;
  self.samples = std::move(samples);
  self.onEnd = std::move(onEnd);
  self.loop = pw_thread_loop_new("quillmere-sound", nullptr);
  if (self.loop == nullptr || pw_thread_loop_start(self.loop) < 0) return;
  pw_thread_loop_lock(self.loop);
  self.stream = pw_stream_new_simple(pw_thread_loop_get_loop(self.loop), "app.quillmere.sound", propertiesOf(remote),
                                     &events, &self);
  if (self.stream != nullptr) {
    std::array<std::uint8_t, 1024> space{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, space.data(), static_cast<std::uint32_t>(space.size()));
    spa_audio_info_raw format{};
    format.format = SPA_AUDIO_FORMAT_F32;
    format.rate = sampleRateHz;
    format.channels = 1;
    format.position[0] = SPA_AUDIO_CHANNEL_MONO;
    const spa_pod* parameters[] = {spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &format)};
    const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS);
    self.isStarted =
        pw_stream_connect(self.stream, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, parameters, 1) >= 0 && !self.hasEnded;
  }
  pw_thread_loop_unlock(self.loop);
}

ToneVoice::~ToneVoice() {
  if (fields_->loop != nullptr) {
    pw_thread_loop_lock(fields_->loop);
    if (fields_->stream != nullptr) pw_stream_destroy(fields_->stream);
    pw_thread_loop_unlock(fields_->loop);
    pw_thread_loop_stop(fields_->loop);
    pw_thread_loop_destroy(fields_->loop);
  }
  pw_deinit();
}

bool ToneVoice::isStarted() const { return fields_->isStarted; }

}  // namespace quillmere::sounds
