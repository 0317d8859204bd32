// Clients and devices by the thousand in one process, for the fault campaign. Reads one command a line, answers each
// with "ok" or with what went wrong:
//   join N           N clients connect, with a quiet playback stream each; answered when all have been linked
//   leave            they disconnect, streams and all, as when a program is closed
//   device NAME      a virtual output appears
//   undevice NAME    and goes
#include <pipewire/pipewire.h>
#include <poll.h>
#include <spa/param/audio/format-utils.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(20);

pw_main_loop* loop = nullptr;
pw_context* context = nullptr;

/// Runs the loop until the condition holds; false when it takes too long.
bool runUntil(const std::function<bool()>& condition) {
  const auto deadline = Clock::now() + patience;
  auto* raw = pw_main_loop_get_loop(loop);
  while (!condition()) {
    if (Clock::now() > deadline) return false;
    pw_loop_iterate(raw, 20);
  }
  return true;
}

/// One client with one stream.
class Visitor {
 public:
  explicit Visitor(int number) {
    core_ = pw_context_connect(context, pw_properties_new(PW_KEY_APP_NAME, "Visitor", nullptr), 0);
    if (core_ == nullptr) return;
    const auto name = "visitor-" + std::to_string(number);
    stream_ = pw_stream_new(core_, name.c_str(),
                            pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                                              PW_KEY_NODE_LATENCY, "4096/48000", nullptr));
    static const auto events = [] {
      pw_stream_events made{};
      made.version = PW_VERSION_STREAM_EVENTS;
      made.process = [](void* data) { static_cast<Visitor*>(data)->onProcess(); };
      return made;
    }();
    pw_stream_add_listener(stream_, &listener_, &events, this);
    spa_audio_info_raw info{};
    info.format = SPA_AUDIO_FORMAT_F32;
    info.rate = 48000;
    info.channels = 2;
    info.position[0] = SPA_AUDIO_CHANNEL_FL;
    info.position[1] = SPA_AUDIO_CHANNEL_FR;
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    std::array<const spa_pod*, 1> params{spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info)};
    pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                      static_cast<pw_stream_flags>(static_cast<std::uint32_t>(PW_STREAM_FLAG_AUTOCONNECT) |
                                                   PW_STREAM_FLAG_MAP_BUFFERS),
                      params.data(), params.size());
  }
  ~Visitor() {
    if (stream_ != nullptr) pw_stream_destroy(stream_);
    if (core_ != nullptr) pw_core_disconnect(core_);
  }
  Visitor(const Visitor&) = delete;
  Visitor& operator=(const Visitor&) = delete;

  [[nodiscard]] bool isLinked() const {
    return stream_ != nullptr && pw_stream_get_state(stream_, nullptr) == PW_STREAM_STATE_STREAMING;
  }

 private:
  void onProcess() {
    auto* buffer = pw_stream_dequeue_buffer(stream_);
    if (buffer == nullptr) return;
    auto& data = buffer->buffer->datas[0];
    const std::uint32_t size = std::min<std::uint32_t>(data.maxsize, 4096 * 8);
    if (data.data != nullptr) std::memset(data.data, 0, size);
    data.chunk->offset = 0;
    data.chunk->stride = 8;
    data.chunk->size = size;
    pw_stream_queue_buffer(stream_, buffer);
  }

  pw_core* core_ = nullptr;
  pw_stream* stream_ = nullptr;
  spa_hook listener_{};
};

/// A virtual output that lives as long as this.
class Device {
 public:
  Device(pw_core* core, const std::string& name) {
    auto* properties = pw_properties_new(PW_KEY_FACTORY_NAME, "support.null-audio-sink", PW_KEY_NODE_NAME, name.c_str(),
                                         PW_KEY_NODE_DESCRIPTION, name.c_str(), PW_KEY_MEDIA_CLASS, "Audio/Sink",
                                         "audio.rate", "48000", "audio.position", "FL,FR", "monitor.channel-volumes",
                                         "true", "session.suspend-timeout-seconds", "0", nullptr);
    proxy_ = static_cast<pw_proxy*>(
        pw_core_create_object(core, "adapter", PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, &properties->dict, 0));
    pw_properties_free(properties);
  }
  ~Device() {
    if (proxy_ != nullptr) pw_proxy_destroy(proxy_);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;
  [[nodiscard]] bool isThere() const { return proxy_ != nullptr && pw_proxy_get_bound_id(proxy_) != SPA_ID_INVALID; }

 private:
  pw_proxy* proxy_ = nullptr;
};

class Visitors {
 public:
  std::string run(const std::string& line) {
    std::istringstream words(line);
    std::string command;
    std::string argument;
    words >> command >> argument;
    if (command == "join") return join(std::atoi(argument.c_str()));
    if (command == "leave") return visitors_.clear(), "ok";
    if (command == "device") return device(argument);
    if (command == "undevice") return devices_.erase(argument) == 1 ? "ok" : "no such device";
    return "no such command";
  }

 private:
  std::string join(int count) {
    for (int number = 0; number < count; ++number) visitors_.push_back(std::make_unique<Visitor>(number));
    const auto areLinked = [this] {
      return std::all_of(visitors_.begin(), visitors_.end(), [](const auto& visitor) { return visitor->isLinked(); });
    };
    return runUntil(areLinked) ? "ok" : "not all were linked";
  }
  std::string device(const std::string& name) {
    if (core_ == nullptr) core_ = pw_context_connect(context, nullptr, 0);
    if (core_ == nullptr) return "no daemon";
    const auto& made = *devices_.insert_or_assign(name, std::make_unique<Device>(core_, name)).first->second;
    return runUntil([&] { return made.isThere(); }) ? "ok" : "the device did not come";
  }

  pw_core* core_ = nullptr;
  std::vector<std::unique_ptr<Visitor>> visitors_;
  std::map<std::string, std::unique_ptr<Device>> devices_;
};

}  // namespace

int main(int argc, char** argv) {
  pw_init(&argc, &argv);
  loop = pw_main_loop_new(nullptr);
  context = pw_context_new(pw_main_loop_get_loop(loop), nullptr, 0);
  auto* raw = pw_main_loop_get_loop(loop);
  pw_loop_enter(raw);
  Visitors visitors;
  std::string received;
  while (true) {
    pw_loop_iterate(raw, 5);
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, 0) <= 0) continue;
    std::array<char, 4096> chunk{};
    const auto count = read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count <= 0) return 0;
    received.append(chunk.data(), static_cast<std::size_t>(count));
    for (auto end = received.find('\n'); end != std::string::npos; end = received.find('\n')) {
      std::cout << visitors.run(received.substr(0, end)) << std::endl;
      received.erase(0, end + 1);
    }
  }
}
