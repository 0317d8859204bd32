#include "platform/macos/MacAudioHardware.h"

#import <CoreAudio/AudioHardwareTapping.h>
#import <CoreAudio/CATapDescription.h>
#import <CoreAudio/CoreAudio.h>

#include <string_view>
#include <type_traits>
#include <utility>

#include "audio/Address.h"
#include "audio/IOProcs.h"
#include "audio/Listeners.h"
#include "foundation/PropertyListObject.h"
#include "foundation/Text.h"
#include "platform/macos/pure/AggregateDictionary.h"

namespace quillmere {

namespace {

// What the port calls by its own names is what the system calls so.
static_assert(std::is_same_v<AudioObjectID, ::AudioObjectID>);
static_assert(systemObjectID == kAudioObjectSystemObject);
static_assert(noErr == kAudioHardwareNoError);
static_assert(badObjectError == kAudioHardwareBadObjectError);
static_assert(unknownPropertyError == kAudioHardwareUnknownPropertyError);
static_assert(hardwareNotRunningError == kAudioHardwareNotRunningError);
static_assert(illegalOperationError == kAudioHardwareIllegalOperationError);
static_assert(unspecifiedError == kAudioHardwareUnspecifiedError);
static_assert(PropertyAddress().scope == kAudioObjectPropertyScopeGlobal);
static_assert(PropertyAddress().element == kAudioObjectPropertyElementMain);
static_assert(audio::scopeGlobal == kAudioObjectPropertyScopeGlobal);
static_assert(audio::scopeOutput == kAudioObjectPropertyScopeOutput);
static_assert(audio::devices == kAudioHardwarePropertyDevices);
static_assert(audio::defaultOutputDevice == kAudioHardwarePropertyDefaultOutputDevice);
static_assert(audio::processObjectList == kAudioHardwarePropertyProcessObjectList);
static_assert(audio::deviceUID == kAudioDevicePropertyDeviceUID);
static_assert(audio::objectName == kAudioObjectPropertyName);
static_assert(audio::streams == kAudioDevicePropertyStreams);
static_assert(audio::deviceIsAlive == kAudioDevicePropertyDeviceIsAlive);
static_assert(audio::volumeScalar == kAudioDevicePropertyVolumeScalar);
static_assert(audio::transportType == kAudioDevicePropertyTransportType);
static_assert(audio::processBundleID == kAudioProcessPropertyBundleID);
static_assert(audio::processPID == kAudioProcessPropertyPID);
static_assert(audio::processIsRunningOutput == kAudioProcessPropertyIsRunningOutput);
static_assert(audio::processIsRunningInput == kAudioProcessPropertyIsRunningInput);
static_assert(audio::tapFormat == kAudioTapPropertyFormat);
static_assert(audio::transportBuiltIn == kAudioDeviceTransportTypeBuiltIn);
static_assert(audio::transportPCI == kAudioDeviceTransportTypePCI);
static_assert(audio::transportBluetooth == kAudioDeviceTransportTypeBluetooth);
static_assert(audio::transportBluetoothLE == kAudioDeviceTransportTypeBluetoothLE);
static_assert(audio::transportUSB == kAudioDeviceTransportTypeUSB);
static_assert(audio::transportFireWire == kAudioDeviceTransportTypeFireWire);
static_assert(audio::transportAirPlay == kAudioDeviceTransportTypeAirPlay);
static_assert(audio::transportHDMI == kAudioDeviceTransportTypeHDMI);
static_assert(audio::transportVirtual == kAudioDeviceTransportTypeVirtual);

constexpr bool isSame(std::string_view ours, std::string_view theirs) { return ours == theirs; }
static_assert(isSame(macos::aggregate::name, kAudioAggregateDeviceNameKey));
static_assert(isSame(macos::aggregate::uid, kAudioAggregateDeviceUIDKey));
static_assert(isSame(macos::aggregate::mainSubDevice, kAudioAggregateDeviceMainSubDeviceKey));
static_assert(isSame(macos::aggregate::isPrivate, kAudioAggregateDeviceIsPrivateKey));
static_assert(isSame(macos::aggregate::isStacked, kAudioAggregateDeviceIsStackedKey));
static_assert(isSame(macos::aggregate::tapAutoStart, kAudioAggregateDeviceTapAutoStartKey));
static_assert(isSame(macos::aggregate::subDevices, kAudioAggregateDeviceSubDeviceListKey));
static_assert(isSame(macos::aggregate::taps, kAudioAggregateDeviceTapListKey));
static_assert(isSame(macos::aggregate::subDeviceUID, kAudioSubDeviceUIDKey));
static_assert(isSame(macos::aggregate::tapUID, kAudioSubTapUIDKey));
static_assert(isSame(macos::aggregate::tapDriftCompensation, kAudioSubTapDriftCompensationKey));

constexpr CATapMuteBehavior behaviorOf(MuteBehavior behavior) {
  switch (behavior) {
    case MuteBehavior::unmuted:
      return CATapUnmuted;
    case MuteBehavior::muted:
      return CATapMuted;
    case MuteBehavior::mutedWhenTapped:
      return CATapMutedWhenTapped;
  }
  return CATapUnmuted;
}
// The port's numbers are the system's.
static_assert(behaviorOf(MuteBehavior::unmuted) == 0);
static_assert(behaviorOf(MuteBehavior::muted) == 1);
static_assert(behaviorOf(MuteBehavior::mutedWhenTapped) == 2);

/// A property of this very size; anything else is an error, and leaves `value` as it is.
template <typename Value>
Status read(AudioObjectID object, const PropertyAddress& address, Value& value) {
  const auto where = macos::addressOf(address);
  Value found{};
  UInt32 size = sizeof(found);
  const OSStatus status = AudioObjectGetPropertyData(object, &where, 0, nullptr, &size, &found);
  if (status != noErr) return status;
  if (size != sizeof(found)) return kAudioHardwareBadPropertySizeError;
  value = found;
  return noErr;
}

template <typename Value>
Status write(AudioObjectID object, const PropertyAddress& address, Value value) {
  const auto where = macos::addressOf(address);
  return AudioObjectSetPropertyData(object, &where, 0, nullptr, sizeof(value), &value);
}

}  // namespace

class MacAudioHardware::Listeners final : public macos::Listeners {};
class MacAudioHardware::IOProcs final : public macos::IOProcs {};

MacAudioHardware::MacAudioHardware() : listeners_(std::make_unique<Listeners>()), procs_(std::make_unique<IOProcs>()) {}

MacAudioHardware::~MacAudioHardware() = default;

// Properties. ---------------------------------------------------------------------------------------------------------

bool MacAudioHardware::hasProperty(AudioObjectID object, const PropertyAddress& address) const {
  const auto where = macos::addressOf(address);
  return AudioObjectHasProperty(object, &where) != 0;
}

Status MacAudioHardware::isPropertySettable(AudioObjectID object, const PropertyAddress& address,
                                            bool& settable) const {
  const auto where = macos::addressOf(address);
  Boolean is_settable = 0;
  const OSStatus status = AudioObjectIsPropertySettable(object, &where, &is_settable);
  if (status == noErr) settable = is_settable != 0;
  return status;
}

Status MacAudioHardware::propertyDataSize(AudioObjectID object, const PropertyAddress& address,
                                          std::uint32_t& byteCount) const {
  const auto where = macos::addressOf(address);
  UInt32 size = 0;
  const OSStatus status = AudioObjectGetPropertyDataSize(object, &where, 0, nullptr, &size);
  if (status == noErr) byteCount = size;
  return status;
}

Status MacAudioHardware::readUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t& value) const {
  return read(object, address, value);
}

Status MacAudioHardware::readInt32(AudioObjectID object, const PropertyAddress& address, std::int32_t& value) const {
  return read(object, address, value);
}

Status MacAudioHardware::readFloat32(AudioObjectID object, const PropertyAddress& address, float& value) const {
  return read(object, address, value);
}

Status MacAudioHardware::readString(AudioObjectID object, const PropertyAddress& address,
                                    std::optional<std::string>& value) const {
  @autoreleasepool {
    CFStringRef owned = nullptr;
    const Status status = read(object, address, owned);
    if (status != noErr) return status;
    // What is read is ours to release.
    value = macos::utf8((__bridge_transfer NSString*)owned);
    return noErr;
  }
}

Status MacAudioHardware::readObjectIDs(AudioObjectID object, const PropertyAddress& address,
                                       std::vector<AudioObjectID>& value) const {
  const auto where = macos::addressOf(address);
  UInt32 size = 0;
  OSStatus status = AudioObjectGetPropertyDataSize(object, &where, 0, nullptr, &size);
  if (status != noErr) return status;
  std::vector<AudioObjectID> ids(size / sizeof(AudioObjectID));
  if (!ids.empty()) {
    size = static_cast<UInt32>(ids.size() * sizeof(AudioObjectID));
    status = AudioObjectGetPropertyData(object, &where, 0, nullptr, &size, ids.data());
    if (status != noErr) return status;
    // The list may have become shorter between the two calls.
    ids.resize(size / sizeof(AudioObjectID));
  }
  value = std::move(ids);
  return noErr;
}

Status MacAudioHardware::readFormat(AudioObjectID object, const PropertyAddress& address,
                                    AudioStreamBasicDescription& value) const {
  ::AudioStreamBasicDescription format{};
  static_assert(sizeof(format) == 40);
  const Status status = read(object, address, format);
  if (status != noErr) return status;
  value = {format.mSampleRate,      format.mFormatID,      format.mFormatFlags,      format.mBytesPerPacket,
           format.mFramesPerPacket, format.mBytesPerFrame, format.mChannelsPerFrame, format.mBitsPerChannel};
  return noErr;
}

Status MacAudioHardware::writeUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t value) {
  return write(object, address, value);
}

Status MacAudioHardware::writeFloat32(AudioObjectID object, const PropertyAddress& address, float value) {
  return write(object, address, value);
}

Status MacAudioHardware::addPropertyListener(AudioObjectID object, const PropertyAddress& address,
                                             PropertyListener listener) {
  return listeners_->add(object, address, std::move(listener));
}

Status MacAudioHardware::removePropertyListener(AudioObjectID object, const PropertyAddress& address,
                                                const PropertyListener& listener) {
  return listeners_->remove(object, address, listener);
}

// Taps and aggregates. ------------------------------------------------------------------------------------------------

Status MacAudioHardware::createProcessTap(const TapDescription& description, AudioObjectID& tap) {
  @autoreleasepool {
    NSMutableArray<NSNumber*>* const processes = [NSMutableArray arrayWithCapacity:description.processes.size()];
    for (const auto process : description.processes) [processes addObject:[NSNumber numberWithUnsignedInt:process]];
    CATapDescription* const told = [[CATapDescription alloc] initStereoMixdownOfProcesses:processes];
    [told setUUID:[[NSUUID alloc] initWithUUIDBytes:description.uuid.bytes.data()]];
    [told setMuteBehavior:behaviorOf(description.muteBehavior)];
    [told setPrivate:description.isPrivate];
    [told setExclusive:description.isExclusive];
    ::AudioObjectID made = 0;
    const OSStatus status = AudioHardwareCreateProcessTap(told, &made);
    if (status == noErr) tap = made;
    return status;
  }
}

Status MacAudioHardware::destroyProcessTap(AudioObjectID tap) { return AudioHardwareDestroyProcessTap(tap); }

Status MacAudioHardware::createAggregateDevice(const AggregateDescription& description, AudioObjectID& device) {
  @autoreleasepool {
    NSDictionary<NSString*, id>* const told __attribute__((objc_precise_lifetime)) =
        macos::propertyListObject(macos::aggregateDictionary(description));
    ::AudioObjectID made = 0;
    const OSStatus status = AudioHardwareCreateAggregateDevice((__bridge CFDictionaryRef)told, &made);
    if (status == noErr) device = made;
    return status;
  }
}

Status MacAudioHardware::destroyAggregateDevice(AudioObjectID device) {
  return AudioHardwareDestroyAggregateDevice(device);
}

// IO blocks. ----------------------------------------------------------------------------------------------------------

Status MacAudioHardware::createIOProc(AudioObjectID device, const std::string& queueLabel, IOBlock block,
                                      IOProcID& proc) {
  return procs_->create(device, queueLabel, std::move(block), proc);
}

Status MacAudioHardware::destroyIOProc(AudioObjectID device, IOProcID proc) { return procs_->destroy(device, proc); }

Status MacAudioHardware::startDevice(AudioObjectID device, IOProcID proc) { return procs_->start(device, proc); }

Status MacAudioHardware::stopDevice(AudioObjectID device, IOProcID proc, float /*appliedGain*/) {
  return procs_->stop(device, proc);
}

}  // namespace quillmere
