#include "PropertyValue.h"

#include <algorithm>

namespace quillmere::pipewire {
namespace {

constexpr std::uint32_t linearPCM = fourCC("lpcm");
/// Float, packed.
constexpr std::uint32_t floatPackedFlags = 1U | 8U;

AudioStreamBasicDescription stereoFormat(double rate) {
  AudioStreamBasicDescription format;
  format.sampleRate = rate;
  format.formatID = linearPCM;
  format.formatFlags = floatPackedFlags;
  format.bytesPerPacket = 2 * sizeof(float);
  format.framesPerPacket = 1;
  format.bytesPerFrame = 2 * sizeof(float);
  format.channelsPerFrame = 2;
  format.bitsPerChannel = 8 * sizeof(float);
  return format;
}

bool isMainGlobal(const PropertyAddress& address) {
  return address.scope == audio::scopeGlobal && address.element == 0;
}

template <typename Records>
std::vector<AudioObjectID> idsOf(const Records& records) {
  std::vector<AudioObjectID> ids;
  ids.reserve(records.size());
  for (const auto& record : records) ids.push_back(record.id);
  return ids;
}

}  // namespace

PropertyValue systemProperty(const AudioSnapshot& snapshot, const PropertyAddress& address) {
  if (!isMainGlobal(address)) return PropertyValue::failure(unknownPropertyError);
  switch (address.selector) {
    case audio::devices:
      return PropertyValue::ofIDs(idsOf(snapshot.devices));
    case audio::processObjectList:
      return PropertyValue::ofIDs(idsOf(snapshot.processes));
    case audio::defaultOutputDevice:
      return PropertyValue::ofNumber(snapshot.defaultOutput, true);
    case audio::refusedDefaultOutput:
      return PropertyValue::ofNumber(snapshot.refusedOutput);
    default:
      return PropertyValue::failure(unknownPropertyError);
  }
}

PropertyValue deviceProperty(const DeviceSnapshot& device, const PropertyAddress& address) {
  if (address.scope == audio::scopeOutput) {
    if (address.selector == audio::streams && address.element == 0) {
      return PropertyValue::ofIDs(device.outputStream != 0 ? std::vector{device.outputStream}
                                                           : std::vector<AudioObjectID>{});
    }
    if (address.selector == audio::volumeScalar && !device.volumes.empty()) {
      // Element 0 is the slider that people see; the channels follow it.
      if (address.element == 0) {
        return PropertyValue::ofReal(*std::ranges::max_element(device.volumes), device.isThere);
      }
      if (address.element <= device.volumes.size()) {
        return PropertyValue::ofReal(device.volumes[address.element - 1], device.isThere);
      }
    }
    return PropertyValue::failure(unknownPropertyError);
  }
  if (!isMainGlobal(address)) return PropertyValue::failure(unknownPropertyError);
  switch (address.selector) {
    case audio::deviceUID:
      return PropertyValue::ofText(device.uid);
    case audio::objectName:
      return PropertyValue::ofText(device.name);
    case audio::deviceIsAlive:
      return PropertyValue::ofNumber(device.isThere ? 1 : 0);
    case audio::transportType:
      return PropertyValue::ofNumber(device.transport);
    default:
      return PropertyValue::failure(unknownPropertyError);
  }
}

PropertyValue processProperty(const ProcessSnapshot& process, const PropertyAddress& address) {
  if (!isMainGlobal(address)) return PropertyValue::failure(unknownPropertyError);
  switch (address.selector) {
    case audio::processBundleID:
      return PropertyValue::ofText(process.identifier);
    case audio::processPID:
      return PropertyValue::ofPID(process.pid);
    case audio::processIsRunningOutput:
      return PropertyValue::ofNumber(process.isRunningOutput ? 1 : 0);
    case audio::processIsRunningInput:
      return PropertyValue::ofNumber(process.isRunningInput ? 1 : 0);
    default:
      return PropertyValue::failure(unknownPropertyError);
  }
}

PropertyValue tapProperty(double rate, const PropertyAddress& address) {
  if (address.selector != audio::tapFormat || !isMainGlobal(address))
    return PropertyValue::failure(unknownPropertyError);
  return PropertyValue::ofFormat(stereoFormat(rate));
}

PropertyValue aggregateProperty(const PropertyAddress& address) {
  if (address.selector != audio::deviceIsAlive || !isMainGlobal(address)) {
    return PropertyValue::failure(unknownPropertyError);
  }
  // It may be started at once: its sound is brought to it whenever daemon, session manager and output are there.
  return PropertyValue::ofNumber(1);
}

}  // namespace quillmere::pipewire
