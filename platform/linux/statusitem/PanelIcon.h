// The program's marks for the panel and its menu, as the bus carries them.
// The drawings are compiled in: rendered when the program is built, they need no renderer where it runs.
#pragma once

#include <cstdint>
#include <span>

#include "../bus/Handles.h"
#include "core/PanelInk.h"

namespace quillmere::statusitem {

/// A square drawing without colour: one byte of opacity a pixel, row by row.
struct IconMask {
  int size;
  std::span<const std::uint8_t> alpha;
};

/// The icon at every size that panels ask for, smallest first. [any]
[[nodiscard]] std::span<const IconMask> panelIconMasks();
/// The whisper mark as a PNG, at twice the size of a menu's icon. [any]
[[nodiscard]] std::span<const std::uint8_t> whisperPng(Ink ink);

/// a(iiay): width, height and pixels with alpha, red, green, blue in this order, not multiplied. [any]
[[nodiscard]] bus::Variant iconPixmaps(Ink ink);

}  // namespace quillmere::statusitem
