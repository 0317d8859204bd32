// A plain PipeWire client that plays a known signal: what the tests listen for at the device's monitor.
//   signal_player [--app-id ID] [--app-name NAME] [--signal dc|sine|counter] [--latency FRAMES/RATE] [--streams N]
//                 [--layout CHANNEL,...] [--prop KEY=VALUE]... [--client-prop KEY=VALUE]... [--record]
// The signal is on the channels FL, FR and MONO, the others are silent. Reads commands from standard input, a line
// each: "pause", "play", "add" (one more stream), "add CHANNEL,..." (of that layout), "drop" (the last one).
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/audio/type-info.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <list>
#include <numbers>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "platform/linux/pipewire/ClientConfiguration.h"

using quillmere::pipewire::realTimeConfiguration;

namespace {

enum class Signal { dc, sine, counter };

struct Options {
  std::string appID = "test.player";
  std::string appName = "Test Player";
  Signal signal = Signal::dc;
  std::string latency = "1024/48000";
  int streams = 1;
  std::string layout = "FL,FR";
  bool isRecording = false;
  std::vector<std::pair<std::string, std::string>> properties;
  std::vector<std::pair<std::string, std::string>> clientProperties;
};

struct Player;

struct Stream {
  Player* player = nullptr;
  pw_stream* stream = nullptr;
  spa_hook listener{};
  std::uint64_t frame = 0;
  /// `spa_audio_channel`
  std::vector<std::uint32_t> channels;
};

struct Player {
  Options options;
  pw_main_loop* loop = nullptr;
  pw_context* context = nullptr;
  pw_core* core = nullptr;
  std::list<Stream> streams;
  std::string line;
};

float sampleAt(Signal signal, std::uint64_t frame) {
  switch (signal) {
    case Signal::dc:
      return 0.5F;
    case Signal::sine:
      return 0.5F * static_cast<float>(std::sin(2.0 * std::numbers::pi * 440.0 * static_cast<double>(frame) / 48000.0));
    // 1 to 16384, in steps that a float holds exactly, never silent.
    case Signal::counter:
      return static_cast<float>(frame % 16384 + 1) / 32768.0F;
  }
  return 0.0F;
}

void onProcess(void* data) {
  auto& self = *static_cast<Stream*>(data);
  auto* buffer = pw_stream_dequeue_buffer(self.stream);
  if (buffer == nullptr) return;
  auto& target = buffer->buffer->datas[0];
  if (!self.player->options.isRecording && target.data != nullptr) {
    const auto stride = self.channels.size() * sizeof(float);
    std::uint64_t frames = target.maxsize / stride;
    if (buffer->requested > 0) frames = std::min(frames, buffer->requested);
    auto* samples = static_cast<float*>(target.data);
    for (std::uint64_t i = 0; i < frames; ++i) {
      const float sample = sampleAt(self.player->options.signal, self.frame++);
      for (const auto channel : self.channels) {
        const bool isFront = channel == SPA_AUDIO_CHANNEL_FL || channel == SPA_AUDIO_CHANNEL_FR;
        *samples++ = isFront || channel == SPA_AUDIO_CHANNEL_MONO ? sample : 0.0F;
      }
    }
    target.chunk->offset = 0;
    target.chunk->stride = static_cast<std::int32_t>(stride);
    target.chunk->size = static_cast<std::uint32_t>(frames * stride);
  }
  pw_stream_queue_buffer(self.stream, buffer);
}

std::vector<std::uint32_t> channelsOf(const std::string& layout) {
  std::vector<std::uint32_t> channels;
  std::istringstream names(layout);
  for (std::string name; std::getline(names, name, ',');) {
    for (const auto* entry = spa_type_audio_channel; entry->name != nullptr; ++entry) {
      if (std::string_view(entry->name).ends_with(":" + name)) channels.push_back(entry->type);
    }
  }
  return channels;
}

void addStream(Player& player, const std::string& layout) {
  static const auto events = [] {
    pw_stream_events made{};
    made.version = PW_VERSION_STREAM_EVENTS;
    made.process = onProcess;
    return made;
  }();
  auto& stream = player.streams.emplace_back();
  stream.player = &player;
  stream.channels = channelsOf(layout);
  auto* properties = pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY,
                                       player.options.isRecording ? "Capture" : "Playback", PW_KEY_NODE_LATENCY,
                                       player.options.latency.c_str(), nullptr);
  for (const auto& [key, value] : player.options.properties) pw_properties_set(properties, key.c_str(), value.c_str());
  const auto name = player.options.appID + "-" + std::to_string(player.streams.size());
  if (pw_properties_get(properties, PW_KEY_NODE_NAME) == nullptr) {
    pw_properties_set(properties, PW_KEY_NODE_NAME, name.c_str());
  }
  stream.stream = pw_stream_new(player.core, name.c_str(), properties);
  pw_stream_add_listener(stream.stream, &stream.listener, &events, &stream);
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32;
  info.rate = 48000;
  info.channels = static_cast<std::uint32_t>(stream.channels.size());
  std::copy(stream.channels.begin(), stream.channels.end(), std::begin(info.position));
  std::array<std::uint8_t, 1024> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  std::array<const spa_pod*, 1> params{spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
  pw_stream_connect(
      stream.stream, player.options.isRecording ? PW_DIRECTION_INPUT : PW_DIRECTION_OUTPUT, PW_ID_ANY,
      static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS),
      params.data(), params.size());
}

void onInput(void* data, int, std::uint32_t) {
  auto& player = *static_cast<Player*>(data);
  std::array<char, 256> text{};
  const auto got = read(STDIN_FILENO, text.data(), text.size());
  if (got <= 0) {
    pw_main_loop_quit(player.loop);
    return;
  }
  player.line.append(text.data(), static_cast<std::size_t>(got));
  for (auto end = player.line.find('\n'); end != std::string::npos; end = player.line.find('\n')) {
    const auto command = player.line.substr(0, end);
    player.line.erase(0, end + 1);
    if (command == "add") addStream(player, player.options.layout);
    if (command.starts_with("add ")) addStream(player, command.substr(4));
    if (command == "drop" && !player.streams.empty()) {
      pw_stream_destroy(player.streams.back().stream);
      player.streams.pop_back();
    }
    for (auto& stream : player.streams) {
      if (command == "pause") pw_stream_set_active(stream.stream, false);
      if (command == "play") pw_stream_set_active(stream.stream, true);
    }
  }
}

Options parse(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string key = arguments[i];
    if (key == "--record") {
      options.isRecording = true;
      continue;
    }
    const std::string value = i + 1 < count ? arguments[++i] : "";
    const auto equals = value.find('=');
    if (key == "--app-id") options.appID = value;
    if (key == "--app-name") options.appName = value;
    if (key == "--latency") options.latency = value;
    if (key == "--streams") options.streams = std::stoi(value);
    if (key == "--layout") options.layout = value;
    if (key == "--signal") {
      options.signal = value == "sine" ? Signal::sine : value == "counter" ? Signal::counter : Signal::dc;
    }
    if (key == "--prop") options.properties.emplace_back(value.substr(0, equals), value.substr(equals + 1));
    if (key == "--client-prop")
      options.clientProperties.emplace_back(value.substr(0, equals), value.substr(equals + 1));
  }
  return options;
}

}  // namespace

int main(int count, char** arguments) {
  pw_init(nullptr, nullptr);
  Player player;
  player.options = parse(count, arguments);
  player.loop = pw_main_loop_new(nullptr);
  auto* loop = pw_main_loop_get_loop(player.loop);
  player.context = pw_context_new(
      loop, pw_properties_new(PW_KEY_CONFIG_NAME, realTimeConfiguration(pw_get_library_version()), nullptr), 0);
  auto* properties = pw_properties_new(nullptr, nullptr);
  if (!player.options.appID.empty()) pw_properties_set(properties, PW_KEY_APP_ID, player.options.appID.c_str());
  if (!player.options.appName.empty()) pw_properties_set(properties, PW_KEY_APP_NAME, player.options.appName.c_str());
  for (const auto& [key, value] : player.options.clientProperties) {
    pw_properties_set(properties, key.c_str(), value.c_str());
  }
  player.core = pw_context_connect(player.context, properties, 0);
  if (player.core == nullptr) {
    std::cerr << "signal_player: no daemon answers\n";
    return 1;
  }
  pw_loop_add_io(loop, STDIN_FILENO, SPA_IO_IN | SPA_IO_HUP, false, onInput, &player);
  for (int i = 0; i < player.options.streams; ++i) addStream(player, player.options.layout);
  pw_main_loop_run(player.loop);
  return 0;
}
