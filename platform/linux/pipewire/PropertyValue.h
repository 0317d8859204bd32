// The value of one property of one audio object, read from a snapshot. Pure: [any].
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "AudioSnapshot.h"
#include "platform/AudioTypes.h"

namespace quillmere::pipewire {

enum class ValueType { none, number, signedNumber, real, text, ids, format };

/// The member that `type` names is set; where `status` isn't noErr, none is.
struct PropertyValue {
  ValueType type = ValueType::none;
  std::uint32_t number = 0;
  std::int32_t signedNumber = 0;
  float real = 0.0F;
  std::string text;
  std::vector<AudioObjectID> ids;
  AudioStreamBasicDescription format;
  bool isSettable = false;
  Status status = unknownPropertyError;

  static PropertyValue ofNumber(std::uint32_t value, bool isSettable = false) {
    PropertyValue result;
    result.type = ValueType::number;
    result.number = value;
    result.isSettable = isSettable;
    result.status = noErr;
    return result;
  }
  static PropertyValue ofPID(std::int32_t value) {
    PropertyValue result;
    result.type = ValueType::signedNumber;
    result.signedNumber = value;
    result.status = noErr;
    return result;
  }
  static PropertyValue ofReal(float value, bool isSettable) {
    PropertyValue result;
    result.type = ValueType::real;
    result.real = value;
    result.isSettable = isSettable;
    result.status = noErr;
    return result;
  }
  static PropertyValue ofText(std::string value) {
    PropertyValue result;
    result.type = ValueType::text;
    result.text = std::move(value);
    result.status = noErr;
    return result;
  }
  static PropertyValue ofIDs(std::vector<AudioObjectID> value) {
    PropertyValue result;
    result.type = ValueType::ids;
    result.ids = std::move(value);
    result.status = noErr;
    return result;
  }
  static PropertyValue ofFormat(const AudioStreamBasicDescription& value) {
    PropertyValue result;
    result.type = ValueType::format;
    result.format = value;
    result.status = noErr;
    return result;
  }
  static PropertyValue failure(Status status) {
    PropertyValue result;
    result.status = status;
    return result;
  }

  [[nodiscard]] std::uint32_t byteCount() const {
    switch (type) {
      case ValueType::ids:
        return static_cast<std::uint32_t>(ids.size() * sizeof(AudioObjectID));
      case ValueType::text:
        return sizeof(void*);
      case ValueType::format:
        return sizeof(AudioStreamBasicDescription);
      default:
        return sizeof(std::uint32_t);
    }
  }
};

[[nodiscard]] PropertyValue systemProperty(const AudioSnapshot& snapshot, const PropertyAddress& address);
[[nodiscard]] PropertyValue deviceProperty(const DeviceSnapshot& device, const PropertyAddress& address);
[[nodiscard]] PropertyValue processProperty(const ProcessSnapshot& process, const PropertyAddress& address);
/// `rate` in Hz.
[[nodiscard]] PropertyValue tapProperty(double rate, const PropertyAddress& address);
[[nodiscard]] PropertyValue aggregateProperty(const PropertyAddress& address);

}  // namespace quillmere::pipewire
