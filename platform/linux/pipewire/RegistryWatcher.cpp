#include "RegistryWatcher.h"

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>
#include <spa/param/audio/raw.h>
#include <spa/param/props.h>
#include <spa/param/route.h>
#include <spa/pod/iter.h>
#include <spa/pod/parser.h>

#include <array>
#include <string_view>
#include <utility>

namespace quillmere::pipewire {
namespace {

constexpr std::size_t mostChannels = SPA_AUDIO_MAX_CHANNELS;

Properties propertiesOf(const spa_dict* dict) {
  Properties properties;
  if (dict == nullptr) return properties;
  for (std::uint32_t i = 0; i < dict->n_items; ++i) {
    const auto& item = dict->items[i];
    if (item.key != nullptr && item.value != nullptr) properties[item.key] = item.value;
  }
  return properties;
}

std::optional<std::vector<float>> channelVolumesIn(const spa_pod* props) {
  if (props == nullptr || !spa_pod_is_object(props)) return std::nullopt;
  const auto* found = spa_pod_find_prop(props, nullptr, SPA_PROP_channelVolumes);
  if (found == nullptr) return std::nullopt;
  std::array<float, mostChannels> values{};
  const auto count = spa_pod_copy_array(&found->value, SPA_TYPE_Float, values.data(), values.size());
  return std::vector<float>(values.begin(), values.begin() + count);
}

/// The registry tells a few properties only. Of our own nodes we know the rest; their every change would be news.
bool isFollowedNode(const Properties& properties) {
  if (text(properties, "node.name").starts_with(ourNodePrefix)) return false;
  const auto mediaClass = text(properties, "media.class");
  // Nodes that nobody but their own program links have no class.
  if (mediaClass.empty()) return text(properties, "media.type") == "Audio";
  return mediaClass.starts_with("Audio/") || mediaClass.starts_with("Stream/Output/Audio") ||
         mediaClass.starts_with("Stream/Input/Audio");
}

}  // namespace

struct RegistryWatcher::Bound {
  RegistryWatcher* watcher = nullptr;
  GlobalID id = 0;
  pw_proxy* proxy = nullptr;
  spa_hook listener{};
  /// Of a device: its active routes by their place in the list.
  std::map<std::uint32_t, RouteRecord> routes;
};

// The C callbacks; `data` is a Bound, or the watcher for the registry.
struct RegistryWatcher::Callbacks {
  static Bound& bound(void* data) { return *static_cast<Bound*>(data); }

  static void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t version,
                     const spa_dict* properties) {
    static_cast<RegistryWatcher*>(data)->onGlobal(id, type, version, properties);
  }
  static void globalRemoved(void* data, std::uint32_t id) { static_cast<RegistryWatcher*>(data)->onGlobalRemoved(id); }
  static void clientInfo(void* data, const pw_client_info* info) {
    auto& self = bound(data);
    if ((info->change_mask & PW_CLIENT_CHANGE_MASK_PROPS) == 0) return;
    self.watcher->model_.updateClient(self.id, propertiesOf(info->props));
    self.watcher->events_.changed();
  }
  static void nodeInfo(void* data, const pw_node_info* info) {
    auto& self = bound(data);
    auto& model = self.watcher->model_;
    if ((info->change_mask & PW_NODE_CHANGE_MASK_PROPS) != 0) model.updateNode(self.id, propertiesOf(info->props));
    model.setNodeInfo(self.id, info->state == PW_NODE_STATE_RUNNING);
    self.watcher->events_.changed();
  }
  static void nodeParam(void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t, const spa_pod* param) {
    auto& self = bound(data);
    if (id == SPA_PARAM_Props) self.watcher->onNodeParam(self.id, param);
  }
  static void deviceInfo(void* data, const pw_device_info* info) {
    auto& self = bound(data);
    if ((info->change_mask & PW_DEVICE_CHANGE_MASK_PROPS) != 0) {
      self.watcher->model_.updateDevice(self.id, propertiesOf(info->props));
      self.watcher->events_.changed();
    }
  }
  static void deviceParam(void* data, int, std::uint32_t id, std::uint32_t index, std::uint32_t, const spa_pod* param) {
    auto& self = bound(data);
    if (id == SPA_PARAM_Route) self.watcher->onRoute(self, index, param);
  }
  static int metadataProperty(void* data, std::uint32_t subject, const char* key, const char*, const char* value) {
    auto& self = *bound(data).watcher;
    const std::string name = key != nullptr ? key : "";
    const auto text = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    // A target that is only told once more is nobody's move.
    const bool isToldAgain = name == "target.object" && text && self.model_.metadataValue(subject, name) == text;
    self.model_.setMetadata(subject, name, text);
    if (self.toldAgain_) {
      if (text) self.toldAgain_->emplace(subject, name);
      if (!text) self.toldAgain_->erase({subject, name});
    }
    if (!isToldAgain) self.events_.metadata(subject, name, text);
    self.events_.changed();
    return 0;
  }
  static int settingsProperty(void* data, std::uint32_t, const char* key, const char*, const char* value) {
    auto& self = *bound(data).watcher;
    if (key != nullptr && value != nullptr) self.model_.setSetting(key, value);
    self.events_.changed();
    return 0;
  }
};

RegistryWatcher::RegistryWatcher(GraphModel& model, Events events) : model_(model), events_(std::move(events)) {}

RegistryWatcher::~RegistryWatcher() = default;

void RegistryWatcher::attach(pw_core* core) {
  static const auto registryEvents = [] {
    pw_registry_events events{};
    events.version = PW_VERSION_REGISTRY_EVENTS;
    events.global = &Callbacks::global;
    events.global_remove = &Callbacks::globalRemoved;
    return events;
  }();
  registry_ = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
  pw_registry_add_listener(registry_, &listener_, &registryEvents, this);
}

void RegistryWatcher::detach() {
  if (registry_ == nullptr) return;
  for (auto& [id, bound] : bound_) {
    spa_hook_remove(&bound->listener);
    pw_proxy_destroy(bound->proxy);
  }
  bound_.clear();
  keepers_.clear();
  metadata_ = 0;
  toldAgain_.reset();
  spa_hook_remove(&listener_);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
  registry_ = nullptr;
  model_.clear();
  events_.changed();
}

pw_proxy* RegistryWatcher::proxy(GlobalID id) const {
  const auto found = bound_.find(id);
  return found == bound_.end() ? nullptr : found->second->proxy;
}

void RegistryWatcher::write(std::uint32_t subject, const std::string& key, const std::string& type,
                            const std::optional<std::string>& value) {
  auto* metadata = metadata_ != 0 ? reinterpret_cast<pw_metadata*>(proxy(metadata_)) : nullptr;
  if (metadata == nullptr) return;
  pw_metadata_set_property(metadata, subject, key.c_str(), value ? type.c_str() : nullptr,
                           value ? value->c_str() : nullptr);
}

void RegistryWatcher::refreshMetadata() {
  const auto found = bound_.find(metadata_);
  if (metadata_ == 0 || found == bound_.end()) return;
  spa_hook_remove(&found->second->listener);
  pw_proxy_destroy(found->second->proxy);
  bound_.erase(found);
  toldAgain_.emplace();
  bindMetadata(std::exchange(metadata_, 0));
}

void RegistryWatcher::metadataRefreshed() {
  if (!toldAgain_ || metadata_ == 0) return;
  const auto told = *std::exchange(toldAgain_, std::nullopt);
  // A session manager that says nothing at all has not answered.
  if (told.empty()) return;
  auto deleted = model_.metadata();
  std::erase_if(deleted, [&](const auto& entry) { return told.contains(entry.first); });
  for (const auto& [place, value] : deleted) {
    model_.setMetadata(place.first, place.second, std::nullopt);
    events_.metadata(place.first, place.second, std::nullopt);
  }
  if (!deleted.empty()) events_.changed();
}

std::string RegistryWatcher::metadataKeeper() const {
  const auto kept = keepers_.find(metadata_);
  const auto keeper = kept == keepers_.end() ? std::nullopt : kept->second;
  const auto found = keeper ? model_.clients().find(*keeper) : model_.clients().end();
  return found == model_.clients().end() ? std::string() : std::string(text(found->second.properties, PW_KEY_APP_NAME));
}

void RegistryWatcher::bindMetadata(GlobalID id) {
  static const auto metadataEvents = [] {
    pw_metadata_events events{};
    events.version = PW_VERSION_METADATA_EVENTS;
    events.property = &Callbacks::metadataProperty;
    return events;
  }();
  auto* bound = bind(id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA);
  if (bound == nullptr) return;
  metadata_ = id;
  pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(bound->proxy), &bound->listener, &metadataEvents, bound);
}

void RegistryWatcher::followMetadata() {
  for (auto kept = keepers_.begin(); kept != keepers_.end() && metadata_ == 0; ++kept) bindMetadata(kept->first);
  if (metadata_ == 0) return;
  events_.metadataPresence(true);
  events_.unsettled();
}

RegistryWatcher::Bound* RegistryWatcher::bind(GlobalID id, const char* type, std::uint32_t version) {
  auto bound = std::make_unique<Bound>();
  bound->watcher = this;
  bound->id = id;
  bound->proxy = static_cast<pw_proxy*>(pw_registry_bind(registry_, id, type, version, 0));
  if (bound->proxy == nullptr) return nullptr;
  return (bound_[id] = std::move(bound)).get();
}

void RegistryWatcher::onGlobal(GlobalID id, const char* type, std::uint32_t, const spa_dict* dict) {
  static const auto clientEvents = [] {
    pw_client_events events{};
    events.version = PW_VERSION_CLIENT_EVENTS;
    events.info = &Callbacks::clientInfo;
    return events;
  }();
  static const auto nodeEvents = [] {
    pw_node_events events{};
    events.version = PW_VERSION_NODE_EVENTS;
    events.info = &Callbacks::nodeInfo;
    events.param = &Callbacks::nodeParam;
    return events;
  }();
  static const auto deviceEvents = [] {
    pw_device_events events{};
    events.version = PW_VERSION_DEVICE_EVENTS;
    events.info = &Callbacks::deviceInfo;
    events.param = &Callbacks::deviceParam;
    return events;
  }();
  static const auto settingsEvents = [] {
    pw_metadata_events events{};
    events.version = PW_VERSION_METADATA_EVENTS;
    events.property = &Callbacks::settingsProperty;
    return events;
  }();

  const std::string_view kind = type;
  const auto properties = propertiesOf(dict);
  if (kind == PW_TYPE_INTERFACE_Client) {
    model_.updateClient(id, properties);
    events_.unsettled();
    if (auto* bound = bind(id, type, PW_VERSION_CLIENT)) {
      pw_client_add_listener(reinterpret_cast<pw_client*>(bound->proxy), &bound->listener, &clientEvents, bound);
    }
  } else if (kind == PW_TYPE_INTERFACE_Node) {
    const auto mediaClass = text(properties, "media.class");
    model_.updateNode(id, properties);
    if (isFollowedNode(properties)) {
      if (auto* bound = bind(id, type, PW_VERSION_NODE)) {
        auto* node = reinterpret_cast<pw_node*>(bound->proxy);
        pw_node_add_listener(node, &bound->listener, &nodeEvents, bound);
        std::array<std::uint32_t, 1> wanted{SPA_PARAM_Props};
        if (mediaClass == "Audio/Sink" || mediaClass == "Audio/Duplex") {
          events_.unsettled();
          pw_node_subscribe_params(node, wanted.data(), wanted.size());
        }
      }
    }
  } else if (kind == PW_TYPE_INTERFACE_Device) {
    if (text(properties, "media.class") != "Audio/Device") return;
    model_.updateDevice(id, properties);
    if (auto* bound = bind(id, type, PW_VERSION_DEVICE)) {
      auto* device = reinterpret_cast<pw_device*>(bound->proxy);
      pw_device_add_listener(device, &bound->listener, &deviceEvents, bound);
      std::array<std::uint32_t, 1> wanted{SPA_PARAM_Route};
      pw_device_subscribe_params(device, wanted.data(), wanted.size());
    }
  } else if (kind == PW_TYPE_INTERFACE_Port) {
    model_.updatePort(id, properties);
  } else if (kind == PW_TYPE_INTERFACE_Link) {
    model_.updateLink(id, properties);
    events_.unsettled();
  } else if (kind == PW_TYPE_INTERFACE_Metadata) {
    const auto name = text(properties, PW_KEY_METADATA_NAME);
    if (name == "settings") {
      if (auto* bound = bind(id, type, PW_VERSION_METADATA)) {
        pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(bound->proxy), &bound->listener, &settingsEvents,
                                 bound);
      }
      return;
    }
    if (name != "default") return;
    keepers_[id] = number(properties, PW_KEY_CLIENT_ID);
    if (metadata_ == 0) followMetadata();
  } else {
    return;
  }
  events_.changed();
}

void RegistryWatcher::onGlobalRemoved(GlobalID id) {
  if (const auto* node = model_.node(id); (node != nullptr && node->kind == NodeKind::sink) || model_.hasLink(id)) {
    events_.unsettled();
  }
  const bool wasMetadata = id == metadata_ && metadata_ != 0;
  model_.remove(id);
  keepers_.erase(id);
  if (const auto found = bound_.find(id); found != bound_.end()) {
    spa_hook_remove(&found->second->listener);
    pw_proxy_destroy(found->second->proxy);
    bound_.erase(found);
  }
  if (wasMetadata) {
    metadata_ = 0;
    toldAgain_.reset();
    model_.clearMetadata();
    events_.metadataPresence(false);
    followMetadata();
  }
  events_.changed();
}

void RegistryWatcher::onNodeParam(GlobalID id, const spa_pod* param) {
  auto volumes = channelVolumesIn(param);
  if (!volumes) return;
  model_.setNodeVolumes(id, std::move(*volumes));
  events_.volumes();
  events_.changed();
}

void RegistryWatcher::onRoute(Bound& device, std::uint32_t index, const spa_pod* param) {
  if (param == nullptr) return;
  // A fresh list begins at its first entry.
  if (index == 0) device.routes.clear();
  std::int32_t routeIndex = 0;
  std::int32_t routeDevice = 0;
  std::uint32_t direction = 0;
  const spa_pod* props = nullptr;
  if (spa_pod_parse_object(param, SPA_TYPE_OBJECT_ParamRoute, nullptr, SPA_PARAM_ROUTE_index, SPA_POD_Int(&routeIndex),
                           SPA_PARAM_ROUTE_device, SPA_POD_Int(&routeDevice), SPA_PARAM_ROUTE_direction,
                           SPA_POD_Id(&direction), SPA_PARAM_ROUTE_props, SPA_POD_OPT_Pod(&props)) < 0) {
    return;
  }
  RouteRecord route;
  route.index = routeIndex;
  route.device = routeDevice;
  route.isOutput = direction == SPA_DIRECTION_OUTPUT;
  if (auto volumes = channelVolumesIn(props)) route.volumes = std::move(*volumes);
  device.routes[index] = std::move(route);
  std::vector<RouteRecord> routes;
  routes.reserve(device.routes.size());
  for (const auto& [place, record] : device.routes) routes.push_back(record);
  model_.setRoutes(device.id, std::move(routes));
  events_.volumes();
  events_.changed();
}

}  // namespace quillmere::pipewire
