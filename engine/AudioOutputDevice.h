// One output device as the picker lists it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "platform/AudioTypes.h"

namespace quillmere {

struct AudioOutputDevice {
  /// The device's identity everywhere above the device layer.
  std::string uid;
  /// The name for people; the UID where the device gives none.
  std::string name;
  /// Its number at the time of the poll.
  AudioObjectID id = 0;
  /// Whether it was the system default output at the time of the poll.
  bool isDefault = false;

  friend bool operator==(const AudioOutputDevice&, const AudioOutputDevice&) = default;
};

}  // namespace quillmere

template <>
struct std::hash<quillmere::AudioOutputDevice> {
  std::size_t operator()(const quillmere::AudioOutputDevice& device) const noexcept;
};
