// Hashing of the device record.
#include "engine/AudioOutputDevice.h"

std::size_t std::hash<quillmere::AudioOutputDevice>::operator()(
    const quillmere::AudioOutputDevice& device) const noexcept {
  std::size_t seed = std::hash<std::string>{}(device.uid);
  const auto mix = [&seed](std::size_t value) { seed = seed * 31 + value; };
  mix(std::hash<std::string>{}(device.name));
  mix(device.id);
  mix(device.isDefault ? 1 : 0);
  return seed;
}
