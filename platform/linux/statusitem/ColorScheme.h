// What the desktop prefers, light or dark, as its portal tells it.
#pragma once

#include <optional>

#include "../bus/Handles.h"

namespace quillmere::statusitem {

/// The portal's values: 1 prefers dark, 2 prefers light, anything else has no preference. Boxes within boxes are
/// opened: the portal's Read() puts one around its answer that its signal has not. [any]
[[nodiscard]] std::optional<bool> prefersDark(GVariant* value);

}  // namespace quillmere::statusitem
