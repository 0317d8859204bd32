// Comparing what is there with what was there at the last look.
#include "engine/HeadphoneMonitor.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

#include "engine/CoreAudioUtils.h"
#include "runtime/Threads.h"

namespace quillmere {

namespace {

constexpr PropertyAddress systemAddress(std::uint32_t selector) { return {selector, audio::scopeGlobal, 0}; }

/// The default output's id, transport type and UID; 0, 0 and absent where they cannot be read.
struct DefaultDevice {
  std::uint32_t transportType = 0;
  std::optional<std::string> uid;
};

DefaultDevice readDefaultDevice(const AudioHardware& hardware) {
  const AudioObjectID device = CoreAudioUtils::systemDefaultOutputDeviceID(hardware).value_or(0);
  DefaultDevice result;
  std::uint32_t transport = 0;
  if (hardware.readUInt32(device, systemAddress(audio::transportType), transport) == noErr) {
    result.transportType = transport;
  }
  if (device != 0) result.uid = CoreAudioUtils::readString(hardware, device, audio::deviceUID);
  return result;
}

}  // namespace

HeadphoneMonitor::HeadphoneMonitor(AudioHardware& hardware, Executor& main)
    : hardware_(hardware), main_(main), self_(std::make_shared<HeadphoneMonitor*>(this)) {}

HeadphoneMonitor::~HeadphoneMonitor() = default;

bool HeadphoneMonitor::isPersonal(std::uint32_t transportType) {
  static constexpr std::array personal{audio::transportBluetooth, audio::transportBluetoothLE, audio::transportUSB,
                                       audio::transportFireWire, audio::transportAirPlay};
  return std::find(personal.begin(), personal.end(), transportType) != personal.end();
}

void HeadphoneMonitor::start() {
  QUILLMERE_CHECK_ON(main_, "the headphone monitor starts off the main thread");
  if (listenerInstalled_) return;
  auto [transportType, uid] = readDefaultDevice(hardware_);
  lastTransportType_ = transportType;
  lastDefaultUID_ = std::move(uid);
  knownDeviceUIDs_ = currentDeviceUIDs();
  defaultListenerBlock_ = makeListener(&HeadphoneMonitor::handleDefaultDeviceChange);
  hardware_.addPropertyListener(systemObjectID, systemAddress(audio::defaultOutputDevice), defaultListenerBlock_);
  deviceListListenerBlock_ = makeListener(&HeadphoneMonitor::handleDeviceListChange);
  hardware_.addPropertyListener(systemObjectID, systemAddress(audio::devices), deviceListListenerBlock_);
  listenerInstalled_ = true;
}

PropertyListener HeadphoneMonitor::makeListener(void (HeadphoneMonitor::*handler)()) {
  return std::make_shared<const std::function<void()>>([weakSelf = std::weak_ptr<HeadphoneMonitor*>(self_), handler] {
    const auto self = weakSelf.lock();
    if (!self) return;
    QUILLMERE_CHECK_ON((*self)->main_, "a change of the devices is told off the main thread");
    ((*self)->*handler)();
  });
}

std::set<std::string> HeadphoneMonitor::currentDeviceUIDs() const {
  std::set<std::string> uids;
  for (const auto device : CoreAudioUtils::readSystemList(hardware_, audio::devices)) {
    if (device == 0) continue;
    if (auto uid = CoreAudioUtils::readString(hardware_, device, audio::deviceUID)) uids.insert(std::move(*uid));
  }
  return uids;
}

void HeadphoneMonitor::handleDefaultDeviceChange() {
  auto [transportType, uid] = readDefaultDevice(hardware_);
  const auto oldTransportType = std::exchange(lastTransportType_, transportType);
  const auto oldUID = std::exchange(lastDefaultUID_, std::move(uid));
  if (std::exchange(suppressNext, false)) return;
  if (!isPersonal(oldTransportType)) return;
  // From headphones to other headphones: nothing is heard that was not meant to be.
  if (isPersonal(transportType)) return;
  if (onDisconnect) onDisconnect(oldUID);
}

void HeadphoneMonitor::handleDeviceListChange() {
  auto current = currentDeviceUIDs();
  std::vector<std::string> removed;
  std::vector<std::string> added;
  std::set_difference(knownDeviceUIDs_.begin(), knownDeviceUIDs_.end(), current.begin(), current.end(),
                      std::back_inserter(removed));
  std::set_difference(current.begin(), current.end(), knownDeviceUIDs_.begin(), knownDeviceUIDs_.end(),
                      std::back_inserter(added));
  knownDeviceUIDs_ = std::move(current);
  for (const auto& uid : removed) {
    if (onDeviceRemoved) onDeviceRemoved(uid);
  }
  for (const auto& uid : added) {
    if (onDeviceAdded) onDeviceAdded(uid);
  }
}

}  // namespace quillmere
