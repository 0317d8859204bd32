#include "platform/linux/PipeWireAudioHardware.h"

#include <utility>

#include "Host.h"
#include "PropertyValue.h"

namespace quillmere {

using pipewire::PropertyValue;
using pipewire::TapDirector;
using pipewire::ValueType;

namespace {

PropertyValue property(const pipewire::Host& host, AudioObjectID object, const PropertyAddress& address) {
  const auto snapshot = host.snapshot();
  if (object == systemObjectID) return systemProperty(*snapshot, address);
  if (const auto* device = snapshot->device(object)) return deviceProperty(*device, address);
  if (const auto* process = snapshot->process(object)) return processProperty(*process, address);
  if (const auto rate = host.tapRate(object)) return pipewire::tapProperty(*rate, address);
  if (host.isTapDevice(object)) return pipewire::aggregateProperty(address);
  return PropertyValue::failure(badObjectError);
}

Status failureOf(const PropertyValue& value, ValueType wanted) {
  if (value.status != noErr) return value.status;
  return value.type == wanted ? noErr : illegalOperationError;
}

}  // namespace

PipeWireAudioHardware::PipeWireAudioHardware(Executor& main, LogSink& log, ApplicationIdentifier identify,
                                             PipeWireOptions options)
    : host_(std::make_unique<pipewire::Host>(main, log, std::move(identify), std::move(options))) {}

PipeWireAudioHardware::~PipeWireAudioHardware() = default;

std::vector<AudioClient> PipeWireAudioHardware::audioClients() const {
  std::vector<AudioClient> clients;
  const auto snapshot = host_->snapshot();
  for (const auto& process : snapshot->processes) {
    clients.push_back({process.identifier, process.pid, process.displayName, process.hasPlayed});
  }
  return clients;
}

const ChangeSignal& PipeWireAudioHardware::changes() const { return host_->changed; }

bool PipeWireAudioHardware::hasProperty(AudioObjectID object, const PropertyAddress& address) const {
  return property(*host_, object, address).status == noErr;
}

Status PipeWireAudioHardware::isPropertySettable(AudioObjectID object, const PropertyAddress& address,
                                                 bool& settable) const {
  const auto found = property(*host_, object, address);
  if (found.status == noErr) settable = found.isSettable;
  return found.status;
}

Status PipeWireAudioHardware::propertyDataSize(AudioObjectID object, const PropertyAddress& address,
                                               std::uint32_t& byteCount) const {
  const auto found = property(*host_, object, address);
  if (found.status == noErr) byteCount = found.byteCount();
  return found.status;
}

Status PipeWireAudioHardware::readUInt32(AudioObjectID object, const PropertyAddress& address,
                                         std::uint32_t& value) const {
  const auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::number);
  if (status == noErr) value = found.number;
  return status;
}

Status PipeWireAudioHardware::readInt32(AudioObjectID object, const PropertyAddress& address,
                                        std::int32_t& value) const {
  const auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::signedNumber);
  if (status == noErr) value = found.signedNumber;
  return status;
}

Status PipeWireAudioHardware::readFloat32(AudioObjectID object, const PropertyAddress& address, float& value) const {
  const auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::real);
  if (status == noErr) value = found.real;
  return status;
}

Status PipeWireAudioHardware::readString(AudioObjectID object, const PropertyAddress& address,
                                         std::optional<std::string>& value) const {
  auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::text);
  if (status == noErr) value = std::move(found.text);
  return status;
}

Status PipeWireAudioHardware::readObjectIDs(AudioObjectID object, const PropertyAddress& address,
                                            std::vector<AudioObjectID>& value) const {
  auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::ids);
  if (status == noErr) value = std::move(found.ids);
  return status;
}

Status PipeWireAudioHardware::readFormat(AudioObjectID object, const PropertyAddress& address,
                                         AudioStreamBasicDescription& value) const {
  const auto found = property(*host_, object, address);
  const Status status = failureOf(found, ValueType::format);
  if (status == noErr) value = found.format;
  return status;
}

Status PipeWireAudioHardware::writeUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t value) {
  const auto found = property(*host_, object, address);
  if (const Status status = failureOf(found, ValueType::number); status != noErr) return status;
  if (!found.isSettable) return illegalOperationError;
  return host_->writeDefaultOutput(value);
}

Status PipeWireAudioHardware::writeFloat32(AudioObjectID object, const PropertyAddress& address, float value) {
  const auto found = property(*host_, object, address);
  if (const Status status = failureOf(found, ValueType::real); status != noErr) return status;
  if (!found.isSettable) return illegalOperationError;
  return host_->writeVolume(object, address.element, value);
}

Status PipeWireAudioHardware::addPropertyListener(AudioObjectID object, const PropertyAddress& address,
                                                  PropertyListener listener) {
  host_->listeners.add(object, address, std::move(listener));
  return noErr;
}

Status PipeWireAudioHardware::removePropertyListener(AudioObjectID object, const PropertyAddress& address,
                                                     const PropertyListener& listener) {
  host_->listeners.remove(object, address, listener);
  return noErr;
}

Status PipeWireAudioHardware::createProcessTap(const TapDescription& description, AudioObjectID& tap) {
  AudioObjectID made = 0;
  const Status status = host_->direct([&](TapDirector& director) { return director.createTap(description, made); });
  if (status != noErr) return status;
  host_->noteTap(made, true);
  tap = made;
  return noErr;
}

Status PipeWireAudioHardware::destroyProcessTap(AudioObjectID tap) {
  host_->noteTap(tap, false);
  return host_->direct([&](TapDirector& director) { return director.destroyTap(tap); });
}

Status PipeWireAudioHardware::createAggregateDevice(const AggregateDescription& description, AudioObjectID& device) {
  AudioObjectID made = 0;
  return host_->direct([&](TapDirector& director) {
    const Status status = director.createDevice(description, made);
    if (status != noErr) return status;
    host_->noteDevice(made, true);
    device = made;
    return noErr;
  });
}

Status PipeWireAudioHardware::destroyAggregateDevice(AudioObjectID device) {
  host_->noteDevice(device, false);
  return host_->direct([&](TapDirector& director) { return director.destroyDevice(device); });
}

Status PipeWireAudioHardware::createIOProc(AudioObjectID device, const std::string& /*queueLabel*/, IOBlock block,
                                           IOProcID& proc) {
  return host_->direct([&](TapDirector& director) { return director.createProc(device, std::move(block), proc); });
}

Status PipeWireAudioHardware::destroyIOProc(AudioObjectID device, IOProcID proc) {
  return host_->direct([&](TapDirector& director) { return director.destroyProc(device, proc); });
}

Status PipeWireAudioHardware::startDevice(AudioObjectID device, IOProcID proc) {
  return host_->direct([&](TapDirector& director) { return director.start(device, proc); });
}

Status PipeWireAudioHardware::stopDevice(AudioObjectID device, IOProcID proc, float appliedGain) {
  return host_->direct([&](TapDirector& director) { return director.stop(device, proc, appliedGain); });
}

}  // namespace quillmere
