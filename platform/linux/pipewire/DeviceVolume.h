// Writes the volume of devices, through the route of the card where there is one, and remembers what is not confirmed.
// [loop] throughout.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "GraphModel.h"
#include "Loop.h"
#include "RegistryWatcher.h"

namespace quillmere::pipewire {

class DeviceVolume {
 public:
  /// `changed` is told when an unconfirmed value stops counting.
  DeviceVolume(Loop& loop, const GraphModel& model, RegistryWatcher& watcher, std::function<void()> changed);

  /// `element` 0 is the whole device, 1 and up its channels; `scalar` the slider's position. False where there is no
  /// such volume.
  bool write(GlobalID id, std::uint32_t element, float scalar);
  /// The daemon has told volumes: what agrees with a write of ours is confirmed.
  void volumesTold();
  /// Linear volumes that count until they are confirmed.
  [[nodiscard]] const std::map<GlobalID, std::vector<float>>& pending() const { return pending_; }
  void forget();

 private:
  void send(const NodeRecord& node, GlobalID id, const std::vector<float>& volumes);

  const GraphModel& model_;
  RegistryWatcher& watcher_;
  std::function<void()> changed_;
  std::map<GlobalID, std::vector<float>> pending_;
  LoopTimer expiry_;
};

}  // namespace quillmere::pipewire
