#include "AudioSnapshot.h"

#include <algorithm>
#include <set>

#include "CubicScale.h"
#include "MetadataValue.h"
#include "TransportType.h"
#include "text/CleanText.h"

namespace quillmere::pipewire {
namespace {

constexpr std::string_view processPrefix = "process:";

bool isDevice(const NodeRecord& node) {
  return (node.kind == NodeKind::sink || node.kind == NodeKind::duplex || node.kind == NodeKind::source) &&
         !node.isOurs && !node.name.empty();
}

/// For people to read. A headset's name is whatever somebody once gave it.
std::string shownName(const NodeRecord& node) {
  for (const auto* key : {"node.description", "node.nick"}) {
    if (auto name = cleanText(text(node.properties, key), maxDisplayNameBytes); !name.empty()) return name;
  }
  return cleanText(node.name, maxDisplayNameBytes);
}

template <typename Record>
std::vector<std::pair<GlobalID, const Record*>> inOrder(const std::map<GlobalID, Record>& records) {
  std::vector<std::pair<GlobalID, const Record*>> ordered;
  ordered.reserve(records.size());
  for (const auto& [id, record] : records) ordered.emplace_back(id, &record);
  std::sort(ordered.begin(), ordered.end(),
            [](const auto& left, const auto& right) { return left.second->order < right.second->order; });
  return ordered;
}

std::vector<DeviceSnapshot> takeDevices(const GraphModel& model, const PendingWrites& pending, ObjectIDs& ids) {
  static const Properties none;
  std::vector<DeviceSnapshot> devices;
  std::set<std::string> taken;
  for (const auto& [nodeID, node] : inOrder(model.nodes())) {
    if (!isDevice(*node)) continue;
    DeviceSnapshot device;
    // Two nodes of one name are legal: the later one goes by its serial too.
    const auto key = taken.insert(node->name).second ? node->name : node->name + "\n" + node->serial;
    device.id = ids.of("device:" + key);
    device.node = nodeID;
    device.uid = node->name;
    device.name = shownName(*node);
    const auto* hardware = model.deviceOf(*node);
    device.transport = transportTypeOf(node->properties, hardware != nullptr ? hardware->properties : none);
    if (node->kind != NodeKind::source) {
      device.outputStream = ids.of("stream:" + key);
      const auto written = pending.volumes.find(nodeID);
      for (const float linear : written != pending.volumes.end() ? written->second : model.volumesOf(*node)) {
        device.volumes.push_back(scalarFromLinear(linear));
      }
    }
    devices.push_back(std::move(device));
  }
  return devices;
}

std::vector<ProcessSnapshot> takeProcesses(const GraphModel& model, ObjectIDs& ids) {
  std::vector<ProcessSnapshot> processes;
  std::map<std::string, std::size_t> places;
  for (const auto& [clientID, client] : inOrder(model.clients())) {
    if (!client->hasStreamed) continue;
    const auto [place, isNew] = places.try_emplace(client->identifier, processes.size());
    if (isNew) {
      ProcessSnapshot process;
      process.id = ids.of(processKey(client->identifier));
      process.identifier = client->identifier;
      process.displayName = clientDisplayName(client->facts);
      if (process.displayName.empty()) process.displayName = process.identifier;
      process.pid = client->facts.pid;
      processes.push_back(std::move(process));
    } else if (processes[place->second].pid == 0) {
      processes[place->second].pid = client->facts.pid;
    }
  }
  for (const auto& [nodeID, node] : model.nodes()) {
    if (!node.isRunning || !model.countsAsStream(node)) continue;
    const auto place = places.find(model.identifierOf(node));
    if (place == places.end()) continue;
    auto& process = processes[place->second];
    if (node.kind == NodeKind::playback) process.isRunningOutput = true;
    if (node.kind == NodeKind::recording && model.recordsARealInput(nodeID, node)) process.isRunningInput = true;
  }
  return processes;
}

}  // namespace

const DeviceSnapshot* AudioSnapshot::device(AudioObjectID id) const {
  const auto found = std::find_if(devices.begin(), devices.end(), [&](const auto& device) { return device.id == id; });
  return found == devices.end() ? nullptr : &*found;
}

const ProcessSnapshot* AudioSnapshot::process(AudioObjectID id) const {
  const auto found =
      std::find_if(processes.begin(), processes.end(), [&](const auto& process) { return process.id == id; });
  return found == processes.end() ? nullptr : &*found;
}

AudioSnapshot takeSnapshot(const GraphModel& model, const PendingWrites& pending, ObjectIDs& ids) {
  AudioSnapshot snapshot;
  snapshot.devices = takeDevices(model, pending, ids);
  snapshot.processes = takeProcesses(model, ids);
  auto defaultName = pending.defaultOutput;
  if (!defaultName) {
    if (const auto told = model.metadataValue(0, "default.audio.sink")) defaultName = nameFromMetadata(*told);
  }
  for (const auto& device : snapshot.devices) {
    if (defaultName && device.uid == *defaultName && device.outputStream != 0) {
      snapshot.defaultOutput = device.id;
      break;
    }
  }
  return snapshot;
}

std::vector<PropertyChange> differences(const AudioSnapshot& before, const AudioSnapshot& after) {
  std::vector<PropertyChange> changes;
  const auto note = [&](AudioObjectID object, std::uint32_t selector, bool changed) {
    if (changed) changes.push_back({object, selector});
  };
  const auto sameIDs = [](const auto& left, const auto& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const auto& a, const auto& b) { return a.id == b.id; });
  };
  note(systemObjectID, audio::devices, !sameIDs(before.devices, after.devices));
  note(systemObjectID, audio::processObjectList, !sameIDs(before.processes, after.processes));
  note(systemObjectID, audio::defaultOutputDevice, before.defaultOutput != after.defaultOutput);
  for (const auto& device : after.devices) {
    const auto* old = before.device(device.id);
    note(device.id, audio::deviceIsAlive, old == nullptr);
    if (old == nullptr) continue;
    note(device.id, audio::objectName, old->name != device.name);
    note(device.id, audio::transportType, old->transport != device.transport);
    note(device.id, audio::volumeScalar, old->volumes != device.volumes);
  }
  for (const auto& device : before.devices) note(device.id, audio::deviceIsAlive, after.device(device.id) == nullptr);
  for (const auto& process : after.processes) {
    const auto* old = before.process(process.id);
    if (old == nullptr) continue;
    note(process.id, audio::processPID, old->pid != process.pid);
    note(process.id, audio::processIsRunningOutput, old->isRunningOutput != process.isRunningOutput);
    note(process.id, audio::processIsRunningInput, old->isRunningInput != process.isRunningInput);
  }
  return changes;
}

std::string processKey(const std::string& identifier) { return std::string(processPrefix) + identifier; }

std::optional<std::string> identifierOfKey(const std::string& key) {
  if (!key.starts_with(processPrefix)) return std::nullopt;
  return key.substr(processPrefix.size());
}

}  // namespace quillmere::pipewire
