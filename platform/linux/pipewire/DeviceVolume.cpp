#include "DeviceVolume.h"

#include <pipewire/pipewire.h>
#include <spa/param/props.h>
#include <spa/param/route.h>
#include <spa/pod/builder.h>

#include <array>
#include <cmath>

#include "CubicScale.h"

namespace quillmere::pipewire {
namespace {

/// An older echo must not move a slider that is being dragged; this long ours is what counts.
constexpr Duration confirmationTime = std::chrono::milliseconds(300);
constexpr float closeEnough = 1e-5F;

bool agree(const std::vector<float>& left, const std::vector<float>& right) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (std::fabs(left[i] - right[i]) > closeEnough) return false;
  }
  return true;
}

void addVolumes(spa_pod_builder& builder, const std::vector<float>& volumes) {
  spa_pod_builder_prop(&builder, SPA_PROP_channelVolumes, 0);
  spa_pod_builder_array(&builder, sizeof(float), SPA_TYPE_Float, static_cast<std::uint32_t>(volumes.size()),
                        volumes.data());
}

}  // namespace

DeviceVolume::DeviceVolume(Loop& loop, const GraphModel& model, RegistryWatcher& watcher, std::function<void()> changed)
    : model_(model), watcher_(watcher), changed_(std::move(changed)), expiry_(loop, [this] { giveUpUnanswered(); }) {}

bool DeviceVolume::write(GlobalID id, std::uint32_t element, float scalar) {
  const auto* node = model_.node(id);
  if (node == nullptr) return false;
  const auto unconfirmed = pending_.find(id);
  auto volumes = unconfirmed != pending_.end() ? unconfirmed->second : model_.volumesOf(*node);
  if (volumes.empty() || element > volumes.size()) return false;
  const float linear = linearFromScalar(scalar);
  if (element == 0) {
    volumes = withLoudest(volumes, linear);
  } else {
    volumes[element - 1] = linear;
  }
  send(*node, id, volumes);
  pending_[id] = std::move(volumes);
  auto& record = writes_.try_emplace(id, Write{node->serial, model_.volumesOf(*node)}).first->second;
  record.waitsForSound = false;
  expiry_.arm(confirmationTime);
  changed_();
  return true;
}

void DeviceVolume::volumesTold() {
  std::vector<GlobalID> confirmed;
  for (const auto& [id, volumes] : pending_) {
    const auto* node = model_.node(id);
    if (node == nullptr || agree(volumes, model_.volumesOf(*node))) confirmed.push_back(id);
  }
  for (const auto id : confirmed) drop(id);
  if (!confirmed.empty()) changed_();
}

void DeviceVolume::graphChanged() {
  std::vector<GlobalID> gone;
  for (auto& [id, write] : writes_) {
    const auto* node = model_.node(id);
    if (node == nullptr || node->serial != write.serial) {
      gone.push_back(id);
    } else if (write.waitsForSound && (node->isRunning || !agree(write.toldBefore, model_.volumesOf(*node)))) {
      // Now it can answer; what it tells then may also be what somebody else has written since.
      write.waitsForSound = false;
      expiry_.arm(confirmationTime);
    }
  }
  for (const auto id : gone) drop(id);
}

void DeviceVolume::giveUpUnanswered() {
  std::vector<GlobalID> unanswered;
  for (auto& [id, write] : writes_) {
    const auto* node = model_.node(id);
    // A node that has not sounded yet may keep a volume to itself until it does (1.4 does, where no card has the
    // volume): as long as it says nothing else, ours is what will be heard.
    write.waitsForSound = node != nullptr && node->serial == write.serial && !node->isRunning &&
                          model_.routeOf(*node) == nullptr && agree(write.toldBefore, model_.volumesOf(*node));
    if (!write.waitsForSound) unanswered.push_back(id);
  }
  for (const auto id : unanswered) drop(id);
  if (!unanswered.empty()) changed_();
}

void DeviceVolume::drop(GlobalID id) {
  pending_.erase(id);
  writes_.erase(id);
}

void DeviceVolume::forget() {
  pending_.clear();
  writes_.clear();
  changed_();
}

void DeviceVolume::send(const NodeRecord& node, GlobalID id, const std::vector<float>& volumes) {
  std::array<std::uint8_t, 4096> memory{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, memory.data(), memory.size());
  spa_pod_frame outer{};
  const auto* route = model_.routeOf(node);
  auto* device = route != nullptr && node.device ? watcher_.proxy(*node.device) : nullptr;
  if (device != nullptr) {
    spa_pod_builder_push_object(&builder, &outer, SPA_TYPE_OBJECT_ParamRoute, SPA_PARAM_Route);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_index, 0);
    spa_pod_builder_int(&builder, route->index);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_device, 0);
    spa_pod_builder_int(&builder, route->device);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_props, 0);
    spa_pod_frame inner{};
    spa_pod_builder_push_object(&builder, &inner, SPA_TYPE_OBJECT_Props, SPA_PARAM_Route);
    addVolumes(builder, volumes);
    spa_pod_builder_pop(&builder, &inner);
    spa_pod_builder_prop(&builder, SPA_PARAM_ROUTE_save, 0);
    spa_pod_builder_bool(&builder, true);
    const auto* param = static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &outer));
    pw_device_set_param(reinterpret_cast<pw_device*>(device), SPA_PARAM_Route, 0, param);
    return;
  }
  auto* proxy = watcher_.proxy(id);
  if (proxy == nullptr) return;
  spa_pod_builder_push_object(&builder, &outer, SPA_TYPE_OBJECT_Props, SPA_PARAM_Props);
  addVolumes(builder, volumes);
  const auto* param = static_cast<const spa_pod*>(spa_pod_builder_pop(&builder, &outer));
  pw_node_set_param(reinterpret_cast<pw_node*>(proxy), SPA_PARAM_Props, 0, param);
}

}  // namespace quillmere::pipewire
