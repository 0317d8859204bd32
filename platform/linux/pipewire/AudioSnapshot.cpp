#include "AudioSnapshot.h"

#include <algorithm>
#include <set>

#include "CubicScale.h"
#include "Microphone.h"
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

/// The node's own among the keys that are taken. Two nodes of one name are legal: the later one goes by its serial too,
/// and by its turn where it has none or another's. A name holds no null byte, so that none reads as another's key.
std::string keyAmong(std::set<std::string>& taken, const NodeRecord& node) {
  auto key = node.name;
  if (taken.insert(key).second) return key;
  key += '\0' + node.serial;
  while (!taken.insert(key).second) key += '\0';
  return key;
}

std::vector<DeviceSnapshot> takeDevices(const GraphModel& model, const Volumes& pending, ObjectIDs& ids) {
  static const Properties none;
  std::vector<DeviceSnapshot> devices;
  std::set<std::string> taken;
  for (const auto& [nodeID, node] : inOrder(model.nodes())) {
    if (!isDevice(*node)) continue;
    DeviceSnapshot device;
    const auto key = keyAmong(taken, *node);
    device.id = ids.of(deviceKey(key));
    device.node = nodeID;
    device.uid = node->name;
    device.name = shownName(*node);
    const auto* hardware = model.deviceOf(*node);
    device.transport = transportTypeOf(node->properties, hardware != nullptr ? hardware->properties : none);
    if (node->kind != NodeKind::source) {
      device.outputStream = ids.of("stream:" + key);
      const auto written = pending.find(nodeID);
      for (const float linear : written != pending.end() ? written->second : model.volumesOf(*node)) {
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
    if (client->hasPlayed) processes[place->second].hasPlayed = true;
  }
  for (const auto& [nodeID, node] : model.nodes()) {
    const bool isJack = node.kind == NodeKind::jack && !node.isOurs;
    if (!node.isRunning || !(isJack || model.countsAsStream(node))) continue;
    const auto place = places.find(model.identifierOf(node));
    if (place == places.end()) continue;
    auto& process = processes[place->second];
    if (node.kind == NodeKind::playback || (isJack && model.playsOnAnOutput(nodeID))) process.isRunningOutput = true;
    if (node.kind != NodeKind::playback && !process.isRunningInput) {
      process.isRunningInput = recordsAMicrophone(model, nodeID);
    }
  }
  return processes;
}

DeviceSnapshot goneNow(DeviceSnapshot device) {
  device.isThere = false;
  // The number may be another node's by now.
  device.node = 0;
  return device;
}

template <typename Condition>
const DeviceSnapshot* firstOf(const std::vector<DeviceSnapshot>& devices, const Condition& condition) {
  const auto found = std::find_if(devices.begin(), devices.end(), condition);
  return found == devices.end() ? nullptr : &*found;
}

}  // namespace

const DeviceSnapshot* AudioSnapshot::device(AudioObjectID id) const {
  const auto found = std::find_if(devices.begin(), devices.end(), [&](const auto& device) { return device.id == id; });
  if (found != devices.end()) return &*found;
  return departedDefault && departedDefault->id == id ? &*departedDefault : nullptr;
}

const ProcessSnapshot* AudioSnapshot::process(AudioObjectID id) const {
  const auto found =
      std::find_if(processes.begin(), processes.end(), [&](const auto& process) { return process.id == id; });
  return found == processes.end() ? nullptr : &*found;
}

AudioSnapshot takeSnapshot(const GraphModel& model, const Volumes& pendingVolumes, ObjectIDs& ids) {
  AudioSnapshot snapshot;
  snapshot.devices = takeDevices(model, pendingVolumes, ids);
  snapshot.processes = takeProcesses(model, ids);
  return snapshot;
}

void keepDevices(AudioSnapshot& snapshot, const AudioSnapshot& before,
                 const std::function<bool(const DeviceSnapshot&)>& isHeld) {
  for (const auto& device : before.devices) {
    if (snapshot.device(device.id) != nullptr || !isHeld(device)) continue;
    snapshot.devices.push_back(goneNow(device));
  }
}

void setDefaultOutput(AudioSnapshot& snapshot, const AudioSnapshot& before, const std::optional<std::string>& name) {
  if (!name) return;
  const auto isMeant = [&](const DeviceSnapshot& device) { return device.uid == *name && device.outputStream != 0; };
  const auto* found = firstOf(snapshot.devices, isMeant);
  if (found == nullptr) {
    found = firstOf(before.devices, isMeant);
    if (found == nullptr && before.departedDefault && isMeant(*before.departedDefault))
      found = &*before.departedDefault;
    if (found == nullptr) return;
    snapshot.departedDefault = goneNow(*found);
    found = &*snapshot.departedDefault;
  }
  snapshot.defaultOutput = found->id;
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
  note(systemObjectID, audio::defaultOutputDevice,
       before.settledDefault != after.settledDefault || before.choicesAnswered != after.choicesAnswered);
  note(systemObjectID, audio::refusedDefaultOutput,
       after.refusedOutput != 0 && before.choicesAnswered != after.choicesAnswered);
  for (const auto& device : after.devices) {
    const auto* old = before.device(device.id);
    note(device.id, audio::deviceIsAlive, old == nullptr || old->isThere != device.isThere);
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

std::string deviceKey(const std::string& name) { return "device:" + name; }

std::string processKey(const std::string& identifier) { return std::string(processPrefix) + identifier; }

std::optional<std::string> identifierOfKey(const std::string& key) {
  if (!key.starts_with(processPrefix)) return std::nullopt;
  return key.substr(processPrefix.size());
}

}  // namespace quillmere::pipewire
