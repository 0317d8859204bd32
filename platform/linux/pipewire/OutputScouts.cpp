#include "OutputScouts.h"

#include <pipewire/pipewire.h>
#include <spa/pod/builder.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "TapParams.h"

namespace quillmere::pipewire {
namespace {

/// A session manager that links what it knows does so within a few milliseconds.
constexpr Duration linkPatience = std::chrono::milliseconds(500);
/// One that is needed again within this time is still there.
constexpr Duration lingerTime = std::chrono::seconds(1);

}  // namespace

struct OutputScouts::Scout {
  OutputScouts* owner = nullptr;
  pw_stream* stream = nullptr;
  spa_hook listener{};
  bool wasLinked = false;
  bool isLinked = false;
  /// The session manager has said that there is nothing to play on.
  bool isRefused = false;
  /// Has waited for a link for longer than it takes.
  bool isLate = false;

  ~Scout() {
    if (stream == nullptr) return;
    spa_hook_remove(&listener);
    pw_stream_destroy(stream);
  }
};

OutputScouts::OutputScouts(Loop& loop, const GraphModel& model, Stragglers& stragglers, std::function<pw_core*()> core,
                           Logger log, std::function<void()> changed)
    : model_(model),
      stragglers_(stragglers),
      core_(std::move(core)),
      log_(std::move(log)),
      changed_(std::move(changed)),
      patience_(loop, [this] { giveUpWaiting(); }),
      dismissal_(loop, [this] {
        std::erase_if(scouts_, [&](const auto& entry) { return !needed_.contains(entry.first); });
        if (scouts_.empty()) stragglers_.stand(false);
      }) {}

OutputScouts::~OutputScouts() = default;

void OutputScouts::need(const std::set<Destination>& destinations) {
  needed_ = destinations;
  if (!needed_.empty()) stragglers_.stand(true);
  if (std::any_of(scouts_.begin(), scouts_.end(), [&](const auto& entry) { return !needed_.contains(entry.first); })) {
    dismissal_.arm(lingerTime);
  }
  for (const auto& destination : destinations) {
    if (scouts_.contains(destination)) continue;
    if (auto scout = send(destination)) scouts_.emplace(destination, std::move(scout));
    patience_.arm(linkPatience);
  }
}

void OutputScouts::forget() {
  needed_.clear();
  scouts_.clear();
  stragglers_.stand(false);
  dismissal_.disarm();
}

OutputFinder::Answer OutputScouts::find(const Destination& destination) const {
  const auto found = scouts_.find(destination);
  if (found == scouts_.end()) return {false, guess(destination)};
  const auto& scout = *found->second;
  const bool isSafe = stragglers_.areReady();
  if (auto output = linkedOutput(scout); !output.empty()) return {isSafe, std::move(output)};
  if (scout.isRefused) return {true, {}};
  if (!scout.isLate) return {false, guess(destination)};
  // One that was linked before waits for its output; one that never was is not served by this session manager.
  return {true, scout.wasLinked ? std::string() : guess(destination)};
}

void OutputScouts::graphChanged() {
  for (const auto& [destination, scout] : scouts_) {
    const bool isLinked = !linkedOutput(*scout).empty();
    if (isLinked) {
      scout->wasLinked = true;
      scout->isRefused = scout->isLate = false;
    } else if (scout->isLinked) {
      patience_.arm(linkPatience);
    }
    scout->isLinked = isLinked;
  }
}

void OutputScouts::giveUpWaiting() {
  bool isNews = false;
  for (const auto& [destination, scout] : scouts_) {
    if (scout->isLinked || scout->isRefused || scout->isLate) continue;
    scout->isLate = isNews = true;
  }
  if (isNews) changed_();
}

std::string OutputScouts::guess(const Destination& destination) const {
  auto output = destination ? model_.outputSerial(destination) : std::string();
  if (output.empty() && destination && model_.nodeBySerial(*destination) != nullptr) output = *destination;
  return output.empty() ? model_.outputSerial(std::nullopt) : output;
}

std::string OutputScouts::linkedOutput(const Scout& scout) const {
  const auto id = pw_stream_get_node_id(scout.stream);
  const auto peer = id != SPA_ID_INVALID ? model_.linkedInput(id) : std::nullopt;
  const auto* node = peer ? model_.node(*peer) : nullptr;
  return node != nullptr ? node->serial : std::string();
}

std::unique_ptr<OutputScouts::Scout> OutputScouts::send(const Destination& destination) {
  static const auto events = [] {
    pw_stream_events made{};
    made.version = PW_VERSION_STREAM_EVENTS;
    made.state_changed = [](void* data, pw_stream_state, pw_stream_state state, const char* error) {
      auto& scout = *static_cast<Scout*>(data);
      if (state != PW_STREAM_STATE_ERROR || scout.isRefused || scout.isLinked) return;
      scout.isRefused = true;
      scout.owner->log_.standard(logText("a tapped application waits for its output: %s",
                                         error != nullptr ? error : "the session manager gives no reason"));
      scout.owner->changed_();
    };
    return made;
  }();

  auto* core = core_();
  if (core == nullptr) return nullptr;
  const auto name = std::string(ourNodePrefix) + "scout-" + std::to_string(getpid()) + "-" + std::to_string(++made_);
  auto* properties = pw_properties_new(nullptr, nullptr);
  const auto set = [&](const char* key, const std::string& value) {
    pw_properties_set(properties, key, value.c_str());
  };
  set(PW_KEY_NODE_NAME, name);
  set(PW_KEY_NODE_DESCRIPTION, "Quillmere");
  set(PW_KEY_MEDIA_NAME, "Quillmere");
  set(PW_KEY_MEDIA_TYPE, "Audio");
  set(PW_KEY_MEDIA_CLASS, "Stream/Output/Audio/Internal");
  // By this the session manager takes its target as it is: another stream's is forgotten once it is the default output.
  set(PW_KEY_NODE_LINK_GROUP, name);
  set(PW_KEY_NODE_VIRTUAL, "true");
  set(PW_KEY_NODE_PASSIVE, "true");
  set("state.restore-props", "false");
  set("state.restore-target", "false");
  if (destination) set(PW_KEY_TARGET_OBJECT, *destination);

  auto scout = std::make_unique<Scout>();
  scout->owner = this;
  scout->stream = pw_stream_new(core, name.c_str(), properties);
  if (scout->stream == nullptr) {
    log_.error("a stream that finds an output could not be made");
    return nullptr;
  }
  pw_stream_add_listener(scout->stream, &scout->listener, &events, scout.get());
  std::array<std::uint8_t, 1024> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  std::array<const spa_pod*, 1> formats{params::stereoFormat(builder, 0)};
  const int result = pw_stream_connect(
      scout->stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
      static_cast<pw_stream_flags>(static_cast<std::uint32_t>(PW_STREAM_FLAG_AUTOCONNECT) | PW_STREAM_FLAG_INACTIVE),
      formats.data(), formats.size());
  if (result < 0) {
    log_.error(logText("a stream that finds an output could not be connected (%d)", result));
    return nullptr;
  }
  return scout;
}

}  // namespace quillmere::pipewire
