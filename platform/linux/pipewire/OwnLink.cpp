#include "OwnLink.h"

#include <pipewire/pipewire.h>

#include <cerrno>
#include <utility>

namespace quillmere::pipewire {

struct OwnLink::Callbacks {
  static void removed(void* data) {
    auto& self = *static_cast<OwnLink*>(data);
    self.isGone_ = true;
    self.changed_();
  }
  static void error(void* data, int, int result, const char* message) {
    static_cast<OwnLink*>(data)->fail(result, message);
  }
  static void info(void* data, const pw_link_info* info) {
    auto& self = *static_cast<OwnLink*>(data);
    if (info->state == PW_LINK_STATE_ERROR) {
      return self.fail(-EIO, info->error != nullptr ? info->error : "no reason given");
    }
    self.isStanding_ = info->state >= PW_LINK_STATE_PAUSED;
    self.changed_();
  }
};

OwnLink::OwnLink(pw_core* core, const PortRecord& output, const PortRecord& input, Logger log, std::string what,
                 std::function<void()> changed)
    : log_(std::move(log)), what_(std::move(what)), changed_(std::move(changed)) {
  static const auto proxyEvents = [] {
    pw_proxy_events made{};
    made.version = PW_VERSION_PROXY_EVENTS;
    made.removed = &Callbacks::removed;
    made.error = &Callbacks::error;
    return made;
  }();
  static const auto events = [] {
    pw_link_events made{};
    made.version = PW_VERSION_LINK_EVENTS;
    made.info = &Callbacks::info;
    return made;
  }();
  auto* properties = pw_properties_new(nullptr, nullptr);
  const auto set = [&](const char* key, GlobalID id) {
    pw_properties_set(properties, key, std::to_string(id).c_str());
  };
  set(PW_KEY_LINK_OUTPUT_NODE, output.node);
  set(PW_KEY_LINK_OUTPUT_PORT, output.id);
  set(PW_KEY_LINK_INPUT_NODE, input.node);
  set(PW_KEY_LINK_INPUT_PORT, input.id);
  // As the node's own property says to newer daemons.
  pw_properties_set(properties, PW_KEY_LINK_PASSIVE, "true");
  pw_properties_set(properties, PW_KEY_OBJECT_LINGER, "false");
  proxy_ = static_cast<pw_proxy*>(
      pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0));
  pw_properties_free(properties);
  if (proxy_ == nullptr) {
    isGone_ = true;
    log_.error(what_ + ": no link could be asked for");
    return;
  }
  pw_proxy_add_listener(proxy_, &proxyListener_, &proxyEvents, this);
  pw_link_add_listener(reinterpret_cast<pw_link*>(proxy_), &listener_, &events, this);
}

OwnLink::~OwnLink() {
  if (proxy_ == nullptr) return;
  spa_hook_remove(&proxyListener_);
  spa_hook_remove(&listener_);
  pw_proxy_destroy(proxy_);
}

void OwnLink::fail(int result, const char* message) {
  if (!isGone_) log_.error(logText("%s (%d): %s", what_.c_str(), result, message));
  isGone_ = true;
  changed_();
}

}  // namespace quillmere::pipewire
