// Reading and setting devices by UID.
#include "engine/CoreAudioUtils.h"

namespace quillmere {

std::vector<AudioObjectID> CoreAudioUtils::readSystemList(const AudioHardware& hardware, std::uint32_t selector) {
  const PropertyAddress address{selector, audio::scopeGlobal, 0};
  std::uint32_t byteCount = 0;
  if (hardware.propertyDataSize(systemObjectID, address, byteCount) != noErr || byteCount == 0) return {};
  std::vector<AudioObjectID> ids;
  if (hardware.readObjectIDs(systemObjectID, address, ids) != noErr) return {};
  return ids;
}

std::optional<AudioObjectID> CoreAudioUtils::deviceID(const AudioHardware& hardware, const std::string& uid) {
  for (const auto id : readSystemList(hardware, audio::devices)) {
    if (id != 0 && readString(hardware, id, audio::deviceUID) == uid) return id;
  }
  return std::nullopt;
}

std::optional<AudioObjectID> CoreAudioUtils::systemDefaultOutputDeviceID(const AudioHardware& hardware) {
  AudioObjectID device = 0;
  if (hardware.readUInt32(systemObjectID, {audio::defaultOutputDevice, audio::scopeGlobal, 0}, device) != noErr) {
    return std::nullopt;
  }
  if (device == 0) return std::nullopt;
  return device;
}

std::optional<std::string> CoreAudioUtils::readString(const AudioHardware& hardware, AudioObjectID object,
                                                      std::uint32_t selector) {
  std::optional<std::string> text;
  if (hardware.readString(object, {selector, audio::scopeGlobal, 0}, text) != noErr) return std::nullopt;
  return text;
}

bool CoreAudioUtils::setSystemDefaultOutput(AudioHardware& hardware, LogSink& log, const std::string& uid) {
  const Logger logger(log, "CoreAudioUtils");
  const auto device = deviceID(hardware, uid);
  if (!device) {
    logger.error("setSystemDefaultOutput: no AudioObjectID for UID " + uid);
    return false;
  }
  const Status status =
      hardware.writeUInt32(systemObjectID, {audio::defaultOutputDevice, audio::scopeGlobal, 0}, *device);
  if (status != noErr) {
    logger.error(logText("setSystemDefaultOutput failed (%d) for UID %s", status, uid.c_str()));
    return false;
  }
  const auto nowDefault = systemDefaultOutputDeviceID(hardware);
  const auto nowUID = nowDefault ? readString(hardware, *nowDefault, audio::deviceUID) : std::nullopt;
  if (!nowUID) {
    logger.info("setSystemDefaultOutput: set " + uid + " (read-back unavailable)");
    return true;
  }
  // The write may return success although the system did not take the device; only the read-back tells.
  logger.info("setSystemDefaultOutput: requested " + uid + ", system now reports " + *nowUID);
  return *nowUID == uid;
}

bool CoreAudioUtils::isAlive(const AudioHardware& hardware, AudioObjectID device) {
  std::uint32_t alive = 0;
  const Status status = hardware.readUInt32(device, {audio::deviceIsAlive, audio::scopeGlobal, 0}, alive);
  return status == noErr && alive == 1;
}

}  // namespace quillmere
