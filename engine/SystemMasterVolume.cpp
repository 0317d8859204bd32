// Volume by element, and the listeners on it.
#include "engine/SystemMasterVolume.h"

#include <utility>

#include "core/Mixer.h"
#include "engine/CoreAudioUtils.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

/// The main element and the two front channels, in the order in which listeners are attached.
constexpr std::uint32_t channels[] = {0, 1, 2};

constexpr PropertyAddress outputAddress(std::uint32_t selector, std::uint32_t channel) {
  return {selector, audio::scopeOutput, channel};
}

}  // namespace

SystemMasterVolume::SystemMasterVolume(AudioHardware& hardware, Executor& main, LogSink& log)
    : hardware_(hardware),
      main_(main),
      log_(log, "SystemMasterVolume"),
      self_(std::make_shared<SystemMasterVolume*>(this)),
      listener_(makeListener()) {
  attachToDefaultOutput();
}

SystemMasterVolume::~SystemMasterVolume() = default;

std::optional<float> SystemMasterVolume::readScalar(AudioObjectID device, std::uint32_t channel) const {
  const auto address = outputAddress(audio::volumeScalar, channel);
  if (!hardware_.hasProperty(device, address)) return std::nullopt;
  float value = 0.0F;
  if (hardware_.readFloat32(device, address, value) != noErr) return std::nullopt;
  return value;
}

std::optional<float> SystemMasterVolume::read() const {
  QUILLMERE_CHECK_ON(main_, "the master volume is read off the main thread");
  const auto device = CoreAudioUtils::systemDefaultOutputDeviceID(hardware_);
  if (!device) return std::nullopt;
  if (const auto mainVolume = readScalar(*device, 0)) return mainVolume;
  const auto first = readScalar(*device, 1);
  const auto second = readScalar(*device, 2);
  // The first channel is asked once more, and it alone decides whether the device counts as having channels at all.
  if (!readScalar(*device, 1)) return std::nullopt;
  const float left = first.value_or(0.0F);
  const float right = second.value_or(left);
  return (left + right) * 0.5F;
}

bool SystemMasterVolume::writeScalar(float value, AudioObjectID device, std::uint32_t channel) {
  const auto address = outputAddress(audio::volumeScalar, channel);
  if (!hardware_.hasProperty(device, address)) return false;
  bool settable = false;
  if (hardware_.isPropertySettable(device, address, settable) != noErr || !settable) return false;
  return hardware_.writeFloat32(device, address, value) == noErr;
}

bool SystemMasterVolume::write(float value) {
  QUILLMERE_CHECK_ON(main_, "the master volume is written off the main thread");
  const float clamped = Mixer{}.clampGain(value);
  const auto device = CoreAudioUtils::systemDefaultOutputDeviceID(hardware_);
  if (!device) return false;
  if (writeScalar(clamped, *device, 0)) return true;
  const bool wroteLeft = writeScalar(clamped, *device, 1);
  const bool wroteRight = writeScalar(clamped, *device, 2);
  if (wroteLeft || wroteRight) return true;
  log_.error(logText("could not write volume on device %u", *device));
  return false;
}

void SystemMasterVolume::followDefaultOutput() {
  QUILLMERE_CHECK_ON(main_, "the master volume follows the default output off the main thread");
  dropListeners();
  attachToDefaultOutput();
}

void SystemMasterVolume::attachToDefaultOutput() {
  const auto device = CoreAudioUtils::systemDefaultOutputDeviceID(hardware_);
  if (!device) return;
  listenedDeviceID_ = *device;
  for (const auto channel : channels) attachListener(audio::volumeScalar, channel);
  listenedSelectors_ = {audio::volumeScalar};
}

PropertyListener SystemMasterVolume::makeListener() {
  const std::weak_ptr<SystemMasterVolume*> weakSelf = self_;
  auto tellVolume = [weakSelf] {
    const auto self = weakSelf.lock();
    if (!self) return;
    // Read fresh: by now the notification may be about a device that is no longer the default.
    const auto volume = (*self)->read();
    if (volume && (*self)->onSystemChange) (*self)->onSystemChange(*volume);
  };
  // A second step through the main queue, so that a burst of notifications is over before the volume is read.
  return std::make_shared<const std::function<void()>>([weakSelf, tellVolume = std::move(tellVolume)] {
    if (const auto self = weakSelf.lock()) (*self)->main_.post(tellVolume);
  });
}

void SystemMasterVolume::attachListener(std::uint32_t selector, std::uint32_t channel) {
  const auto address = outputAddress(selector, channel);
  if (hardware_.hasProperty(listenedDeviceID_, address)) {
    hardware_.addPropertyListener(listenedDeviceID_, address, listener_);
  }
}

void SystemMasterVolume::dropListeners() {
  if (listenedDeviceID_ != 0) {
    for (const auto selector : listenedSelectors_) {
      for (const auto channel : channels) {
        const auto address = outputAddress(selector, channel);
        if (!hardware_.hasProperty(listenedDeviceID_, address)) continue;
        // A fresh block names no listener, so the old device's listeners stay. They read the default output like all
        // others: the cost is a read too many when an old device changes.
        hardware_.removePropertyListener(listenedDeviceID_, address,
                                         std::make_shared<const std::function<void()>>([] {}));
      }
    }
  }
  listenedDeviceID_ = 0;
  listenedSelectors_.clear();
}

}  // namespace quillmere
