// How a device is connected, as the object model's four-character codes. Pure: [any].
#pragma once

#include <cstdint>

#include "Properties.h"

namespace quillmere::pipewire {

/// From the properties of the node and of the device behind it (empty where there is none).
[[nodiscard]] std::uint32_t transportTypeOf(const Properties& node, const Properties& device);

}  // namespace quillmere::pipewire
