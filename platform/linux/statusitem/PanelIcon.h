// The program's marks for the panel and its menu, as the bus carries them.
// The drawings are compiled in: rendered when the program is built, they need no renderer where it runs.
#pragma once

#include <cstdint>
#include <span>

#include "../bus/Handles.h"

namespace quillmere::statusitem {

/// What a mark is drawn in: light on dark ground, or dark on light ground.
enum class Ink { light, dark };

inline constexpr std::uint32_t lightInkRGB = 0xF2F2F2;
inline constexpr std::uint32_t darkInkRGB = 0x242424;
inline constexpr std::uint32_t neutralInkRGB = 0x808080;

/// A square drawing without colour: one byte of opacity a pixel, row by row.
struct IconMask {
  int size;
  std::span<const std::uint8_t> alpha;
};

/// The icon at every size that panels ask for, smallest first. [any]
[[nodiscard]] std::span<const IconMask> panelIconMasks();
/// The whisper mark as a PNG, at twice the size of a menu's icon. [any]
[[nodiscard]] std::span<const std::uint8_t> whisperPng(Ink ink);

/// a(iiay): width, height and pixels with alpha, red, green, blue in this order, not multiplied. `color` is 0xRRGGBB.
/// [any]
[[nodiscard]] bus::Variant iconPixmaps(std::uint32_t color);

}  // namespace quillmere::statusitem
