// The list of output devices, polled.
#pragma once

#include <chrono>
#include <vector>

#include "engine/AudioOutputDevice.h"
#include "platform/AudioHardware.h"
#include "runtime/Stream.h"

namespace quillmere {

class OutputDeviceMonitor {
 public:
  static constexpr Duration period = std::chrono::seconds(3);

  /// Both outlive every stream.
  OutputDeviceMonitor(const AudioHardware& hardware, Executor& background)
      : hardware_(&hardware), background_(&background) {}

  /// The list, at once and then every three seconds, changed or not. [any]
  [[nodiscard]] Stream<std::vector<AudioOutputDevice>> stream() const;

  /// The list of the moment: devices with output streams, the default one first, then by name. Empty where the system's
  /// list cannot be read. [any]
  [[nodiscard]] static std::vector<AudioOutputDevice> outputDevices(const AudioHardware& hardware);

 private:
  const AudioHardware* hardware_;
  Executor* background_;
};

}  // namespace quillmere
