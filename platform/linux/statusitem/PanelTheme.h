// What the desktop's word on light and dark means for the marks.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "../bus/Handles.h"
#include "PanelIcon.h"

namespace quillmere::statusitem {

/// The portal's values: 1 prefers dark, 2 prefers light, anything else has no preference. Boxes within boxes are
/// opened: the portal's Read() puts one around its answer that its signal has not. [any]
[[nodiscard]] std::optional<bool> prefersDark(GVariant* value);

/// What a panel's icon is drawn in, as 0xRRGGBB. Desktops whose bar is dark whatever the windows are get light ink; on
/// the others the desktop's word decides, and without one the ink is a grey with the same contrast, of nearly 4, on
/// black and on white. `desktops` is what XDG_CURRENT_DESKTOP holds. [any]
[[nodiscard]] std::uint32_t panelInkRGB(std::optional<bool> prefersDark, std::string_view desktops);

/// A menu goes with the windows, and those are light where nobody says otherwise. [any]
[[nodiscard]] inline Ink menuInk(std::optional<bool> prefersDark) {
  return prefersDark.value_or(false) ? Ink::light : Ink::dark;
}

}  // namespace quillmere::statusitem
