// Writes the volume of devices, through the route of the card where there is one, and remembers what is not confirmed.
// [loop] throughout.
#pragma once

#include <functional>
#include <map>
#include <string>
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
  /// Nodes have come, gone or begun to run.
  void graphChanged();
  /// Linear volumes that count until they are confirmed.
  [[nodiscard]] const std::map<GlobalID, std::vector<float>>& pending() const { return pending_; }
  void forget();

 private:
  /// What stood where a write of ours went that has not been confirmed.
  struct Write {
    std::string serial;
    std::vector<float> toldBefore;
    /// The time for an answer is over, and the node is one that answers with its first sound.
    bool waitsForSound = false;
  };

  void send(const NodeRecord& node, GlobalID id, const std::vector<float>& volumes);
  void giveUpUnanswered();
  void drop(GlobalID id);

  const GraphModel& model_;
  RegistryWatcher& watcher_;
  std::function<void()> changed_;
  std::map<GlobalID, std::vector<float>> pending_;
  /// For each entry of `pending_`.
  std::map<GlobalID, Write> writes_;
  LoopTimer expiry_;
};

}  // namespace quillmere::pipewire
