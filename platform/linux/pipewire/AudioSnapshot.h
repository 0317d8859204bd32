// One consistent picture of devices and applications, and how two pictures differ.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "GraphModel.h"
#include "ObjectIDs.h"
#include "platform/AudioTypes.h"

namespace quillmere::pipewire {

struct DeviceSnapshot {
  AudioObjectID id = 0;
  /// Its one output stream; 0 for an input-only device.
  AudioObjectID outputStream = 0;
  GlobalID node = 0;
  std::string uid;
  std::string name;
  std::uint32_t transport = 0;
  /// Slider positions 0..1, one a channel; empty without a volume.
  std::vector<float> volumes;
  /// False: it has gone, and is only still told of.
  bool isThere = true;

  friend bool operator==(const DeviceSnapshot&, const DeviceSnapshot&) = default;
};

struct ProcessSnapshot {
  AudioObjectID id = 0;
  std::string identifier;
  std::string displayName;
  std::int32_t pid = 0;
  /// Plays, or has played.
  bool hasPlayed = false;
  bool isRunningOutput = false;
  bool isRunningInput = false;

  friend bool operator==(const ProcessSnapshot&, const ProcessSnapshot&) = default;
};

/// Never changed once it has been taken, so any thread may hold it. [any]
struct AudioSnapshot {
  std::vector<DeviceSnapshot> devices;
  /// In the order of appearance.
  std::vector<ProcessSnapshot> processes;
  /// 0 where there is none.
  AudioObjectID defaultOutput = 0;
  /// The default output where it is a device that is no longer listed.
  std::optional<DeviceSnapshot> departedDefault;
  /// What those who listen for the default have been told: a choice of ours is told when it has been answered.
  AudioObjectID settledDefault = 0;
  /// The choices of ours that have been answered.
  std::uint64_t choicesAnswered = 0;
  /// The device of the last choice if that was refused, 0 otherwise.
  AudioObjectID refusedOutput = 0;

  friend bool operator==(const AudioSnapshot&, const AudioSnapshot&) = default;

  [[nodiscard]] const DeviceSnapshot* device(AudioObjectID id) const;
  [[nodiscard]] const ProcessSnapshot* process(AudioObjectID id) const;
};

/// A share of a snapshot. What it gives lives no longer than it does, so one without a name gives nothing: a loop over
/// a part of such a one would go on after the snapshot has been freed. [any]
class SharedSnapshot {
 public:
  explicit SharedSnapshot(std::shared_ptr<const AudioSnapshot> snapshot) : snapshot_(std::move(snapshot)) {}

  [[nodiscard]] const AudioSnapshot& operator*() const& { return *snapshot_; }
  [[nodiscard]] const AudioSnapshot* operator->() const& { return snapshot_.get(); }
  const AudioSnapshot& operator*() const&& = delete;
  const AudioSnapshot* operator->() const&& = delete;

 private:
  std::shared_ptr<const AudioSnapshot> snapshot_;
};

/// Linear volumes by node.
using Volumes = std::map<GlobalID, std::vector<float>>;

/// The picture that the model gives now. `pendingVolumes` have been written by us and not been confirmed yet; they
/// count as if they had. The snapshot has no default output yet. [loop]
[[nodiscard]] AudioSnapshot takeSnapshot(const GraphModel& model, const Volumes& pendingVolumes, ObjectIDs& ids);

/// Lists a device that has gone, as it was in `before`, for as long as `isHeld` says that it counts as there. [any]
void keepDevices(AudioSnapshot& snapshot, const AudioSnapshot& before,
                 const std::function<bool(const DeviceSnapshot&)>& isHeld);
/// The output of this name is the default; one that has gone is known from `before`. [any]
void setDefaultOutput(AudioSnapshot& snapshot, const AudioSnapshot& before, const std::optional<std::string>& name);

struct PropertyChange {
  AudioObjectID object = 0;
  std::uint32_t selector = 0;

  friend auto operator<=>(const PropertyChange&, const PropertyChange&) = default;
};

/// What listeners are to be told of. [any]
[[nodiscard]] std::vector<PropertyChange> differences(const AudioSnapshot& before, const AudioSnapshot& after);

/// The key of a device's object, by its node.name. [any]
[[nodiscard]] std::string deviceKey(const std::string& name);
/// The key of an application's process object. [any]
[[nodiscard]] std::string processKey(const std::string& identifier);
/// The application identifier of such a key; absent for other keys. [any]
[[nodiscard]] std::optional<std::string> identifierOfKey(const std::string& key);

}  // namespace quillmere::pipewire
