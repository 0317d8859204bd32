// The poll of the audio process objects.
#include "engine/CoreAudioProcessMonitor.h"

#include <utility>

#include "engine/CoreAudioUtils.h"

namespace quillmere {

namespace {

bool readFlag(const AudioHardware& hardware, AudioObjectID object, std::uint32_t selector) {
  std::uint32_t value = 0;
  return hardware.readUInt32(object, {selector, audio::scopeGlobal, 0}, value) == noErr && value != 0;
}

}  // namespace

Stream<std::vector<CoreAudioProcessMonitor::Snapshot>> CoreAudioProcessMonitor::stream() const {
  return joined<std::vector<Snapshot>>({}, [](std::vector<Snapshot> list) { return list; });
}

std::vector<CoreAudioProcessMonitor::Snapshot> CoreAudioProcessMonitor::snapshots(const AudioHardware& hardware) {
  const auto objects = CoreAudioUtils::readSystemList(hardware, audio::processObjectList);
  std::vector<Snapshot> result;
  result.reserve(objects.size());
  for (const auto object : objects) {
    auto bundleID = CoreAudioUtils::readString(hardware, object, audio::processBundleID);
    if (!bundleID) continue;
    std::int32_t pid = 0;
    if (hardware.readInt32(object, {audio::processPID, audio::scopeGlobal, 0}, pid) != noErr) pid = 0;
    result.push_back({std::move(*bundleID), pid, object, readFlag(hardware, object, audio::processIsRunningOutput),
                      readFlag(hardware, object, audio::processIsRunningInput)});
  }
  return result;
}

}  // namespace quillmere

std::size_t std::hash<quillmere::CoreAudioProcessMonitor::Snapshot>::operator()(
    const quillmere::CoreAudioProcessMonitor::Snapshot& snapshot) const noexcept {
  std::size_t seed = std::hash<std::string>{}(snapshot.bundleID);
  const auto mix = [&seed](std::size_t value) { seed = seed * 31 + value; };
  mix(static_cast<std::size_t>(snapshot.pid));
  mix(snapshot.audioObjectID);
  mix(snapshot.isRunningOutput ? 1 : 0);
  mix(snapshot.isRunningInput ? 1 : 0);
  return seed;
}
