#include "TapLinks.h"

#include <pipewire/pipewire.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace quillmere::pipewire {

namespace {

/// Where a device can be played on, in its own order.
std::vector<PortRecord> placesToPlay(std::span<const PortRecord> device) {
  std::vector<PortRecord> places;
  std::copy_if(device.begin(), device.end(), std::back_inserter(places),
               [](const auto& port) { return port.isInput && !port.isMonitor && !port.isControl; });
  std::sort(places.begin(), places.end(), [](const auto& one, const auto& other) { return one.index < other.index; });
  return places;
}

}  // namespace

std::vector<PortPair> outputLinks(std::span<const PortRecord> tap, std::span<const PortRecord> device) {
  const auto ours = [&](std::string_view channel) -> const PortRecord* {
    const auto found = std::find_if(tap.begin(), tap.end(),
                                    [&](const auto& port) { return !port.isInput && port.channel == channel; });
    return found == tap.end() ? nullptr : &*found;
  };
  const auto theirs = placesToPlay(device);
  if (theirs.empty()) return {};
  if (theirs.size() == 1) {
    const auto* mono = ours(monoOutput);
    return mono == nullptr ? std::vector<PortPair>{} : std::vector<PortPair>{{mono->id, theirs.front().id}};
  }
  const auto* left = ours(leftOutput);
  const auto* right = ours(rightOutput);
  if (left == nullptr || right == nullptr) return {};
  const auto front = [&](std::string_view channel, std::size_t place) {
    const auto found =
        std::find_if(theirs.begin(), theirs.end(), [&](const auto& port) { return port.channel == channel; });
    return found == theirs.end() ? theirs[place].id : found->id;
  };
  return {{left->id, front(leftOutput, 0)}, {right->id, front(rightOutput, 1)}};
}

struct TapLinks::Link {
  TapLinks* owner = nullptr;
  pw_proxy* proxy = nullptr;
  spa_hook proxyListener{};
  spa_hook listener{};
  bool isStanding = false;
  bool isGone = false;

  void fail(int result, const char* message) {
    if (!isGone) owner->log_.error(logText("a tap can't be linked to its output (%d): %s", result, message));
    isGone = true;
    owner->changed_();
  }
  void become(pw_link_state state, const char* error) {
    if (state == PW_LINK_STATE_ERROR) return fail(-EIO, error != nullptr ? error : "no reason given");
    isStanding = state >= PW_LINK_STATE_PAUSED;
    owner->changed_();
  }
  ~Link() {
    if (proxy == nullptr) return;
    spa_hook_remove(&proxyListener);
    spa_hook_remove(&listener);
    pw_proxy_destroy(proxy);
  }
};

TapLinks::TapLinks(pw_core* core, const GraphModel& model, std::string serial, Logger log,
                   std::function<void()> changed)
    : core_(core), model_(model), serial_(std::move(serial)), log_(std::move(log)), changed_(std::move(changed)) {}

TapLinks::~TapLinks() = default;

bool TapLinks::wantMono() const {
  const auto device = model_.nodeIDBySerial(serial_);
  return device && placesToPlay(model_.portsOf(*device)).size() == 1;
}

bool TapLinks::isComplete() const {
  return !links_.empty() && !hasFailed_ && std::all_of(links_.begin(), links_.end(), [](const auto& entry) {
    return entry.second->isStanding && !entry.second->isGone;
  });
}

std::map<TapLinks::Ends, PortPair> TapLinks::wantedLinks(GlobalID node, GlobalID device) const {
  const auto ours = model_.portsOf(node);
  const auto theirs = model_.portsOf(device);
  const auto serialOf = [](const std::vector<PortRecord>& ports, GlobalID id) {
    return std::find_if(ports.begin(), ports.end(), [id](const auto& port) { return port.id == id; })->serial;
  };
  std::map<Ends, PortPair> wanted;
  for (const auto& pair : outputLinks(ours, theirs)) {
    wanted.emplace(Ends{serialOf(ours, pair.first), serialOf(theirs, pair.second)}, pair);
  }
  return wanted;
}

void TapLinks::update(GlobalID node) {
  const auto device = model_.nodeIDBySerial(serial_);
  if (!device) {
    hasFailed_ = true;
    links_.clear();
    return;
  }
  const auto wanted = wantedLinks(node, *device);
  std::erase_if(links_, [&](const auto& entry) {
    const bool isWanted = wanted.contains(entry.first);
    if (isWanted && entry.second->isGone) hasFailed_ = true;
    return !isWanted;
  });
  for (const auto& [ends, ports] : wanted) {
    if (hasFailed_) return;
    if (!links_.contains(ends)) links_.emplace(ends, make(node, *device, ports));
  }
}

std::unique_ptr<TapLinks::Link> TapLinks::make(GlobalID node, GlobalID device, const PortPair& ports) {
  static const auto proxyEvents = [] {
    pw_proxy_events made{};
    made.version = PW_VERSION_PROXY_EVENTS;
    made.removed = [](void* data) {
      static_cast<Link*>(data)->isGone = true;
      static_cast<Link*>(data)->owner->changed_();
    };
    made.error = [](void* data, int, int result, const char* message) {
      static_cast<Link*>(data)->fail(result, message);
    };
    return made;
  }();
  static const auto events = [] {
    pw_link_events made{};
    made.version = PW_VERSION_LINK_EVENTS;
    made.info = [](void* data, const pw_link_info* info) {
      static_cast<Link*>(data)->become(info->state, info->error);
    };
    return made;
  }();
  const auto text = [](GlobalID id) { return std::to_string(id); };
  auto* properties = pw_properties_new(nullptr, nullptr);
  pw_properties_set(properties, PW_KEY_LINK_OUTPUT_NODE, text(node).c_str());
  pw_properties_set(properties, PW_KEY_LINK_OUTPUT_PORT, text(ports.first).c_str());
  pw_properties_set(properties, PW_KEY_LINK_INPUT_NODE, text(device).c_str());
  pw_properties_set(properties, PW_KEY_LINK_INPUT_PORT, text(ports.second).c_str());
  // As the node's own property says to newer daemons.
  pw_properties_set(properties, PW_KEY_LINK_PASSIVE, "true");
  pw_properties_set(properties, PW_KEY_OBJECT_LINGER, "false");
  auto link = std::make_unique<Link>();
  link->owner = this;
  link->proxy = static_cast<pw_proxy*>(
      pw_core_create_object(core_, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0));
  pw_properties_free(properties);
  if (link->proxy == nullptr) {
    log_.error("a tap's link could not be asked for");
    hasFailed_ = true;
    return link;
  }
  pw_proxy_add_listener(link->proxy, &link->proxyListener, &proxyEvents, link.get());
  pw_link_add_listener(reinterpret_cast<pw_link*>(link->proxy), &link->listener, &events, link.get());
  return link;
}

}  // namespace quillmere::pipewire
