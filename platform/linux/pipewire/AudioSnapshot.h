// One consistent picture of devices and applications, and how two pictures differ.
#pragma once

#include <optional>
#include <string>
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

  friend bool operator==(const DeviceSnapshot&, const DeviceSnapshot&) = default;
};

struct ProcessSnapshot {
  AudioObjectID id = 0;
  std::string identifier;
  std::string displayName;
  std::int32_t pid = 0;
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

  [[nodiscard]] const DeviceSnapshot* device(AudioObjectID id) const;
  [[nodiscard]] const ProcessSnapshot* process(AudioObjectID id) const;
};

/// Values written by us that the daemon has not confirmed yet; they count as if it had.
struct PendingWrites {
  /// node.name
  std::optional<std::string> defaultOutput;
  /// Linear volumes by node.
  std::map<GlobalID, std::vector<float>> volumes;
};

/// The picture that the model gives now. [loop]
[[nodiscard]] AudioSnapshot takeSnapshot(const GraphModel& model, const PendingWrites& pending, ObjectIDs& ids);

struct PropertyChange {
  AudioObjectID object = 0;
  std::uint32_t selector = 0;

  friend auto operator<=>(const PropertyChange&, const PropertyChange&) = default;
};

/// What listeners are to be told of. [any]
[[nodiscard]] std::vector<PropertyChange> differences(const AudioSnapshot& before, const AudioSnapshot& after);

/// The key of an application's process object. [any]
[[nodiscard]] std::string processKey(const std::string& identifier);
/// The application identifier of such a key; absent for other keys. [any]
[[nodiscard]] std::optional<std::string> identifierOfKey(const std::string& key);

}  // namespace quillmere::pipewire
