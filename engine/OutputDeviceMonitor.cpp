// The poll of the output devices.
#include "engine/OutputDeviceMonitor.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/TextOrder.h"
#include "engine/CoreAudioUtils.h"
#include "runtime/Poll.h"

namespace quillmere {

Stream<std::vector<AudioOutputDevice>> OutputDeviceMonitor::stream() const {
  using Devices = Stream<std::vector<AudioOutputDevice>>;
  return Devices::produce(*background_,
                          [&hardware = *hardware_](TaskContext& task, Devices::Writer& writer) -> Async<void> {
                            const ChangeWatch watch({&hardware.changes()});
                            co_await poll<std::vector<AudioOutputDevice>>(
                                task, writer, period, watch, [&hardware] { return outputDevices(hardware); });
                          });
}

std::vector<AudioOutputDevice> OutputDeviceMonitor::outputDevices(const AudioHardware& hardware) {
  const auto ids = CoreAudioUtils::readSystemList(hardware, audio::devices);
  if (ids.empty()) return {};
  const AudioObjectID defaultID = CoreAudioUtils::systemDefaultOutputDeviceID(hardware).value_or(0);
  std::vector<AudioOutputDevice> devices;
  for (const auto id : ids) {
    std::uint32_t streamBytes = 0;
    const PropertyAddress outputStreams{audio::streams, audio::scopeOutput, 0};
    if (hardware.propertyDataSize(id, outputStreams, streamBytes) != noErr || streamBytes == 0) continue;
    auto uid = CoreAudioUtils::readString(hardware, id, audio::deviceUID);
    if (!uid) continue;
    auto name = CoreAudioUtils::readString(hardware, id, audio::objectName).value_or(*uid);
    devices.push_back({std::move(*uid), std::move(name), id, id == defaultID});
  }
  std::stable_sort(devices.begin(), devices.end(), [](const AudioOutputDevice& left, const AudioOutputDevice& right) {
    if (left.isDefault != right.isDefault) return left.isDefault;
    return compareNames(left.name, right.name) < 0;
  });
  return devices;
}

}  // namespace quillmere
