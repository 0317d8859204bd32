#include "TapStreams.h"

#include <pipewire/pipewire.h>
#include <spa/node/io.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/latency-utils.h>

#include <algorithm>
#include <array>

namespace quillmere::pipewire {
namespace {

// "async": absent from the headers of 0.3.65, which ignores it. Later daemons would run the pair every second cycle.
constexpr std::uint32_t asyncFlag = 1U << 10U;

/// By then the work of a cycle is done.
constexpr std::uint64_t mostWorkNanos = 1'000'000;

}  // namespace

TapStreams::TapStreams(pw_core* core, const std::string& name, const std::optional<std::string>& output, Logger log,
                       std::function<void()> stateChanged)
    : name_(name), log_(std::move(log)), stateChanged_(std::move(stateChanged)) {
  // Capture first: the session manager links nothing while it prepares a node, so a link of the playback side means
  // that it knows the capture side as well.
  open(capture_, core, true, std::nullopt);
  open(playback_, core, false, output);
  realtime_.setStreams(capture_.stream, playback_.stream);
}

TapStreams::~TapStreams() {
  stateChanged_ = nullptr;
  for (auto* side : {&capture_, &playback_}) {
    if (side->stream == nullptr) continue;
    pw_stream_set_active(side->stream, false);
    spa_hook_remove(&side->listener);
    pw_stream_disconnect(side->stream);
  }
  // Both are off the audio thread now.
  realtime_.setStreams(nullptr, nullptr);
  for (auto* side : {&capture_, &playback_}) {
    if (side->stream != nullptr) pw_stream_destroy(side->stream);
  }
}

void TapStreams::open(Side& side, pw_core* core, bool isCapture, const std::optional<std::string>& output) {
  static const auto captureEvents = [] {
    pw_stream_events events{};
    events.version = PW_VERSION_STREAM_EVENTS;
    events.state_changed = [](void* data, pw_stream_state, pw_stream_state state, const char* error) {
      auto* changed = static_cast<Side*>(data);
      changed->owner->onStateChanged(*changed, state, error);
    };
    events.param_changed = [](void* data, std::uint32_t id, const spa_pod* param) {
      auto* changed = static_cast<Side*>(data);
      changed->owner->onParamChanged(*changed, id, param);
    };
    events.remove_buffer = [](void* data, pw_buffer* buffer) {
      static_cast<Side*>(data)->owner->realtime_.forget(buffer);
    };
    events.process = [](void* data) { TapRealtime::onCaptureProcess(&static_cast<Side*>(data)->owner->realtime_); };
    return events;
  }();
  static const auto playbackEvents = [] {
    auto events = captureEvents;
    events.io_changed = &TapStreams::onIOChanged;
    events.process = [](void* data) { TapRealtime::onPlaybackProcess(&static_cast<Side*>(data)->owner->realtime_); };
    return events;
  }();

  side.owner = this;
  auto* properties = pw_properties_new(nullptr, nullptr);
  const auto set = [&](const char* key, const std::string& value) {
    pw_properties_set(properties, key, value.c_str());
  };
  const auto nodeName = name_ + (isCapture ? ".capture" : ".playback");
  set(PW_KEY_NODE_NAME, nodeName);
  set(PW_KEY_NODE_DESCRIPTION, "Quillmere");
  set(PW_KEY_MEDIA_NAME, "Quillmere");
  set(PW_KEY_MEDIA_TYPE, "Audio");
  set(PW_KEY_MEDIA_CLASS, isCapture ? "Stream/Input/Audio/Internal" : "Stream/Output/Audio/Internal");
  set(PW_KEY_NODE_GROUP, name_);
  set(PW_KEY_NODE_LINK_GROUP, name_);
  set(PW_KEY_NODE_VIRTUAL, "true");
  set("resample.prefill", "true");
  // Nothing about us is remembered by the session manager.
  set("state.restore-props", "false");
  set("state.restore-target", "false");
  if (!isCapture) set(PW_KEY_NODE_PASSIVE, "true");
  if (output) {
    set(PW_KEY_TARGET_OBJECT, *output);
    // Streams that are moved from one driver to another while they run may fall silent for good (0.3.65), and whatever
    // is linked to them moves along: another output gets streams of its own.
    set(PW_KEY_NODE_DONT_RECONNECT, "true");
  }

  side.stream = pw_stream_new(core, nodeName.c_str(), properties);
  if (side.stream == nullptr) {
    failed_ = true;
    log_.error("a tap's stream could not be made");
    return;
  }
  pw_stream_add_listener(side.stream, &side.listener, isCapture ? &captureEvents : &playbackEvents, &side);

  spa_audio_info_raw info{};
  // One buffer a channel, as the graph has it: interleaved, each side would be converted by a stage of its own.
  info.format = SPA_AUDIO_FORMAT_F32P;
  info.channels = 2;
  info.position[0] = SPA_AUDIO_CHANNEL_FL;
  info.position[1] = SPA_AUDIO_CHANNEL_FR;
  std::array<std::uint8_t, 1024> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  std::array<const spa_pod*, 1> params{spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
  auto flags = static_cast<std::uint32_t>(PW_STREAM_FLAG_MAP_BUFFERS) | PW_STREAM_FLAG_RT_PROCESS;
  flags |= isCapture ? asyncFlag : static_cast<std::uint32_t>(PW_STREAM_FLAG_AUTOCONNECT) | PW_STREAM_FLAG_TRIGGER;
  const int result = pw_stream_connect(side.stream, isCapture ? PW_DIRECTION_INPUT : PW_DIRECTION_OUTPUT, PW_ID_ANY,
                                       static_cast<pw_stream_flags>(flags), params.data(), params.size());
  if (result < 0) {
    failed_ = true;
    log_.error(logText("a tap's stream could not be connected (%d)", result));
  }
}

bool TapStreams::isConnected() const { return playback_.ready && capture_.ready && !failed_; }

std::uint32_t TapStreams::captureNode() const { return pw_stream_get_node_id(capture_.stream); }

std::uint32_t TapStreams::playbackNode() const { return pw_stream_get_node_id(playback_.stream); }

void TapStreams::onStateChanged(Side& side, int state, const char* error) {
  if (state != PW_STREAM_STATE_ERROR) {
    side.ready = state == PW_STREAM_STATE_PAUSED || state == PW_STREAM_STATE_STREAMING;
  }
  // Only an end that isn't of our making is told as this.
  if (state == PW_STREAM_STATE_UNCONNECTED) failed_ = true;
  side.isStreaming = state == PW_STREAM_STATE_STREAMING;
  if (&side == &playback_) realtime_.setPlaying(state == PW_STREAM_STATE_STREAMING);
  // No output to play to is told as an error too; the stream lives on and is linked when one comes.
  if (state == PW_STREAM_STATE_ERROR) {
    log_.standard(logText("a tap's stream reports: %s", error != nullptr ? error : "an error without a reason"));
  }
  if (stateChanged_) stateChanged_();
}

void TapStreams::onIOChanged(void* data, std::uint32_t id, void* area, std::uint32_t size) {
  if (id != SPA_IO_Position) return;
  const bool isThere = area != nullptr && size >= sizeof(spa_io_position);
  static_cast<Side*>(data)->owner->position_ = isThere ? static_cast<spa_io_position*>(area) : nullptr;
}

std::uint64_t TapStreams::quietMoment() const {
  if (position_ == nullptr || !capture_.isStreaming || !playback_.isStreaming) return 0;
  // The audio threads write here while we read: a moment that is wrong for once is only a moment like any other.
  const auto& clock = position_->clock;
  const std::uint64_t start = clock.nsec;
  const std::uint64_t length = clock.duration * 1'000'000'000ULL * clock.rate.num / std::max(clock.rate.denom, 1U);
  return start == 0 ? 0 : start + length + std::min(length / 8, mostWorkNanos);
}

void TapStreams::setAlwaysProcess(bool isOn) {
  spa_dict_item item{PW_KEY_NODE_ALWAYS_PROCESS, isOn ? "true" : "false"};
  spa_dict properties{0, 1, &item};
  if (capture_.stream != nullptr) pw_stream_update_properties(capture_.stream, &properties);
}

void TapStreams::onParamChanged(Side& side, std::uint32_t id, const spa_pod* param) {
  if (param == nullptr) return;
  if (id == SPA_PARAM_Format) {
    spa_audio_info_raw info{};
    if (spa_format_audio_raw_parse(param, &info) >= 0 && info.rate > 0) realtime_.setRate(info.rate);
  } else if (id == SPA_PARAM_Latency) {
    // Players on the one side learn what latency lies on the other.
    spa_latency_info latency{};
    if (spa_latency_parse(param, &latency) < 0) return;
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 1> params{spa_latency_build(&builder, SPA_PARAM_Latency, &latency)};
    auto* other = &side == &capture_ ? playback_.stream : capture_.stream;
    if (other != nullptr) pw_stream_update_params(other, params.data(), params.size());
  }
}

}  // namespace quillmere::pipewire
