#include "TapNode.h"

#include <pipewire/pipewire.h>
#include <spa/node/io.h>

#include <algorithm>

#include "ChannelShares.h"
#include "LibraryVersion.h"

namespace quillmere::pipewire {
namespace {

/// By then the work of a cycle is done.
constexpr std::uint64_t mostWorkNanos = 1'000'000;

}  // namespace

TapNode::TapNode(pw_core* core, const GraphModel& model, const std::string& name,
                 const std::optional<std::string>& output, Logger log, std::function<void()> changed)
    : context_(pw_core_get_context(core)),
      thread_(context_),
      name_(name),
      log_(std::move(log)),
      changed_(std::move(changed)),
      id_(SPA_ID_INVALID) {
  if (output) links_.emplace(core, model, *output, log_, changed_);

  auto* properties = pw_properties_new(nullptr, nullptr);
  const auto set = [&](const char* key, const std::string& value) {
    pw_properties_set(properties, key, value.c_str());
  };
  set(PW_KEY_NODE_NAME, name);
  set(PW_KEY_NODE_DESCRIPTION, "Quillmere");
  set(PW_KEY_MEDIA_NAME, "Quillmere");
  set(PW_KEY_MEDIA_TYPE, "Audio");
  // The session manager may link streams to it, and no mixer shows it.
  set(PW_KEY_MEDIA_CLASS, "Stream/Input/Audio/Internal");
  set(PW_KEY_NODE_VIRTUAL, "true");
  // The device sleeps while the application is silent: newer daemons take this from here, older ones from the links.
  set(PW_KEY_NODE_PASSIVE, "out");
  // Where there is no output, applications play on into nothing.
  set(PW_KEY_NODE_WANT_DRIVER, "true");
  // Nothing about us is remembered by the session manager.
  set("state.restore-props", "false");
  set("state.restore-target", "false");

  // Its ports are made once. Without this they would be made anew, and all links with them, for every stream whose
  // layout is another.
  set("stream.dont-remix", "true");

  const auto mix = singleChannelMix(libraryVersion(pw_get_library_version()));
  realtime_.setMonoGain(mix.output);
  acquireAudioLoop(properties);
  interface_.emplace(realtime_, audioLoop_, properties, mix.input, changed_);
  if (links_) interface_->setMono(links_->wantMono());

  static const auto proxyEvents = [] {
    pw_proxy_events made{};
    made.version = PW_VERSION_PROXY_EVENTS;
    made.bound = [](void* data, std::uint32_t id) {
      static_cast<TapNode*>(data)->id_ = id;
      static_cast<TapNode*>(data)->changed_();
    };
    made.removed = [](void* data) {
      static_cast<TapNode*>(data)->failed_ = true;
      // It is given to the next that comes.
      static_cast<TapNode*>(data)->id_ = SPA_ID_INVALID;
      static_cast<TapNode*>(data)->changed_();
    };
    made.error = [](void* data, int, int result, const char* message) {
      static_cast<TapNode*>(data)->log_.standard(logText("a tap's node reports %d: %s", result, message));
    };
    return made;
  }();
  spa_dict_item item{PW_KEY_OBJECT_REGISTER, "false"};
  const spa_dict exported{0, 1, &item};
  proxy_ =
      static_cast<pw_proxy*>(pw_core_export(core, SPA_TYPE_INTERFACE_Node, &exported, interface_->implementation(), 0));
  if (proxy_ == nullptr) {
    failed_ = true;
    log_.error("a tap's node could not be made");
    return;
  }
  pw_proxy_add_listener(proxy_, &proxyListener_, &proxyEvents, this);
}

TapNode::~TapNode() {
  links_.reset();
  if (proxy_ != nullptr) {
    spa_hook_remove(&proxyListener_);
    // From here on it is off the audio thread.
    pw_proxy_destroy(proxy_);
  }
  releaseAudioLoop();
}

void TapNode::acquireAudioLoop(pw_properties* properties) {
#if PW_CHECK_VERSION(1, 2, 0)
  // A context may have several; by its name the library takes the same one for the node.
  auto* loop = pw_context_acquire_loop(context_, &properties->dict);
  pw_properties_set(properties, PW_KEY_NODE_LOOP_NAME, loop->name);
  // One without any runs its nodes where it runs everything.
  audioLoop_ = loop == pw_context_get_main_loop(context_) ? nullptr : loop;
#else
  static_cast<void>(properties);
  audioLoop_ = pw_data_loop_get_loop(pw_context_get_data_loop(context_));
#endif
}

void TapNode::releaseAudioLoop() {
#if PW_CHECK_VERSION(1, 2, 0)
  if (audioLoop_ != nullptr) pw_context_release_loop(context_, audioLoop_);
#endif
}

bool TapNode::isConnected() const {
  return id_ != SPA_ID_INVALID && interface_->isConfigured() && !failed_ && (!links_ || links_->isComplete());
}

void TapNode::graphChanged() {
  if (id_ == SPA_ID_INVALID || !links_) return;
  interface_->setMono(links_->wantMono());
  links_->update(id_);
}

std::uint64_t TapNode::quietMoment() const {
  const auto* position = interface_->position();
  if (position == nullptr || !interface_->isStarted()) return 0;
  // The audio threads write here while we read: a moment that is wrong for once is only a moment like any other.
  const auto& clock = position->clock;
  const std::uint64_t start = clock.nsec;
  const std::uint64_t length = clock.duration * 1'000'000'000ULL * clock.rate.num / std::max(clock.rate.denom, 1U);
  return start == 0 ? 0 : start + length + std::min(length / 8, mostWorkNanos);
}

void TapNode::setAlwaysProcess(bool isOn) {
  // The daemon looks at it when it next decides who runs, and for this word alone it doesn't. For another group it
  // does; nobody else is in either of these.
  const auto group = name_ + (isOn ? "-awake" : "-calm");
  interface_->setProperties(
      {{PW_KEY_NODE_ALWAYS_PROCESS, isOn ? "true" : "false"}, {PW_KEY_NODE_GROUP, group.c_str()}});
}

}  // namespace quillmere::pipewire
