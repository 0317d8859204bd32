// Stateless helpers through which the engine reads and sets devices.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioHardware.h"
#include "runtime/Logger.h"

namespace quillmere {

/// All [any]. Failed reads give nothing; only setSystemDefaultOutput logs.
struct CoreAudioUtils {
  /// A list of object ids of the system object; empty where it cannot be read.
  [[nodiscard]] static std::vector<AudioObjectID> readSystemList(const AudioHardware& hardware, std::uint32_t selector);
  /// The first device with this UID.
  [[nodiscard]] static std::optional<AudioObjectID> deviceID(const AudioHardware& hardware, const std::string& uid);
  [[nodiscard]] static std::optional<AudioObjectID> systemDefaultOutputDeviceID(const AudioHardware& hardware);
  /// A text property, scope global, main element; absent for a failed read and for a null reference.
  [[nodiscard]] static std::optional<std::string> readString(const AudioHardware& hardware, AudioObjectID object,
                                                             std::uint32_t selector);
  /// Makes the device the system default and reads back; true if the system then names this very UID, or nothing at
  /// all.
  static bool setSystemDefaultOutput(AudioHardware& hardware, LogSink& log, const std::string& uid);
  /// Whether the device says it is alive; a failed read counts as no.
  [[nodiscard]] static bool isAlive(const AudioHardware& hardware, AudioObjectID device);
};

}  // namespace quillmere
