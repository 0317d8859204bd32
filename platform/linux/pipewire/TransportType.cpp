#include "TransportType.h"

#include "platform/AudioTypes.h"

namespace quillmere::pipewire {
namespace {

std::string_view either(const Properties& node, const Properties& device, std::string_view key) {
  const auto own = text(node, key);
  return own.empty() ? text(device, key) : own;
}

bool contains(std::string_view haystack, std::string_view needle) {
  return haystack.find(needle) != std::string_view::npos;
}

}  // namespace

std::uint32_t transportTypeOf(const Properties& node, const Properties& device) {
  const auto api = either(node, device, "device.api");
  const auto bus = either(node, device, "device.bus");
  const auto nodeName = text(node, "node.name");

  if (api.starts_with("bluez") || bus == "bluetooth" || nodeName.starts_with("bluez_")) {
    const auto profile = either(node, device, "api.bluez5.profile");
    const auto codec = either(node, device, "api.bluez5.codec");
    const bool lowEnergy = profile.starts_with("bap") || codec.starts_with("lc3") || codec.starts_with("opus_g");
    return lowEnergy && codec != "lc3_swb" ? audio::transportBluetoothLE : audio::transportBluetooth;
  }
  if (nodeName.starts_with("raop_sink") || contains(text(node, "media.name"), "RAOP")) return audio::transportAirPlay;
  if (bus == "usb") return audio::transportUSB;
  if (bus == "firewire") return audio::transportFireWire;
  if (bus == "pci" || bus == "isa" || bus == "platform" || api == "alsa" || api == "acp") {
    const auto profile = either(node, device, "device.profile.name");
    const auto formFactor = either(node, device, "device.form-factor");
    if (contains(profile, "hdmi") || contains(nodeName, "hdmi") || formFactor == "tv") return audio::transportHDMI;
    // A card that calls itself internal is the machine's own; so is whatever sits on its board.
    if (formFactor == "internal" || formFactor == "speaker" || bus == "platform") return audio::transportBuiltIn;
    if (contains(profile, "analog") || formFactor.empty()) return audio::transportBuiltIn;
    return audio::transportPCI;
  }
  return audio::transportVirtual;
}

}  // namespace quillmere::pipewire
