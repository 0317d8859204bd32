// What the desktop's word on light and dark means for the marks.
#pragma once

#include <optional>

#include "../bus/Handles.h"
#include "PanelIcon.h"

namespace quillmere::statusitem {

/// The portal's values: 1 prefers dark, 2 prefers light, anything else has no preference. Boxes within boxes are
/// opened: the portal's Read() puts one around its answer that its signal has not. [any]
[[nodiscard]] std::optional<bool> prefersDark(GVariant* value);

/// Without a word from the desktop: most panels are dark, even where windows are light. [any]
[[nodiscard]] inline Ink panelInk(std::optional<bool> prefersDark) {
  return prefersDark.value_or(true) ? Ink::light : Ink::dark;
}

/// A menu goes with the windows, and those are light where nobody says otherwise. [any]
[[nodiscard]] inline Ink menuInk(std::optional<bool> prefersDark) {
  return prefersDark.value_or(false) ? Ink::light : Ink::dark;
}

}  // namespace quillmere::statusitem
