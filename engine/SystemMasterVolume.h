// The hardware volume of the system default output: read, written, and watched for changes made by others.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/AudioHardware.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere {

/// [main] throughout.
class SystemMasterVolume {
 public:
  /// Attaches the listeners to the default output of the moment. All three outlive this.
  SystemMasterVolume(AudioHardware& hardware, Executor& main, LogSink& log);
  ~SystemMasterVolume();
  SystemMasterVolume(const SystemMasterVolume&) = delete;
  SystemMasterVolume& operator=(const SystemMasterVolume&) = delete;

  /// The default output's volume, 0 to 1; the mean of the front channels where it has no main element. Absent without a
  /// default output and without a volume control.
  [[nodiscard]] std::optional<float> read() const;
  /// Sets the default output's volume, limited to 0..1; false if the device takes it on no element.
  bool write(float value);
  /// Lets go of the device listened to and attaches to the default output of the moment.
  void followDefaultOutput();

  /// Told the volume after any change of it, our own writes included.
  std::function<void(float)> onSystemChange;

  /// The device the listeners are on; 0 means none.
  [[nodiscard]] AudioObjectID listenedDeviceID() const { return listenedDeviceID_; }

 private:
  [[nodiscard]] std::optional<float> readScalar(AudioObjectID device, std::uint32_t channel) const;
  bool writeScalar(float value, AudioObjectID device, std::uint32_t channel);
  [[nodiscard]] PropertyListener makeListener();
  void attachListener(std::uint32_t selector, std::uint32_t channel);
  void attachToDefaultOutput();
  void dropListeners();

  AudioHardware& hardware_;
  Executor& main_;
  Logger log_;
  AudioObjectID listenedDeviceID_ = 0;
  std::vector<std::uint32_t> listenedSelectors_;
  /// What listeners hold weakly: gone with this object.
  std::shared_ptr<SystemMasterVolume*> self_;
  /// The one for every device and element. Where it still stands from an earlier stay of the default output, adding it
  /// again makes no second one, so that their number doesn't grow with the changes.
  PropertyListener listener_;
};

}  // namespace quillmere
