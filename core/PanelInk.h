// What the program's marks are drawn in, in panels and their menus: colours that stand out on a ground nobody tells.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quillmere {

/// Light on dark ground, dark on light ground; outlined in the other one where the ground isn't known for certain.
/// [any]
enum class Ink { light, dark, lightOutlined, darkOutlined };

/// 0xRRGGBB. [any]
struct InkColours {
  std::uint32_t fill = 0;
  std::optional<std::uint32_t> outline;

  friend bool operator==(const InkColours&, const InkColours&) = default;
};

[[nodiscard]] InkColours coloursOf(Ink ink);

/// The panel's icon. Desktops whose bar is dark whatever the windows are get plain light ink. Everywhere else what the
/// desktop prefers is a word about windows and only likely to be true of its panel, so the mark is outlined; without a
/// word it is light, as most panels are dark. `desktops` is what XDG_CURRENT_DESKTOP holds. [any]
[[nodiscard]] Ink panelInk(std::optional<bool> prefersDark, std::string_view desktops);

/// A mark in a menu. Menus go with the windows; where nobody says what those are, most are light. [any]
[[nodiscard]] Ink menuInk(std::optional<bool> prefersDark);

/// The pixels of a square drawing, 0xAARRGGBB and not multiplied, row by row: the mask in the fill, over its outline if
/// there is one. Clear pixels have the colour of what is next to them, for hosts that scale the picture.
/// @param alpha    the drawing without colour, `size` times `size` bytes of opacity
/// @param outline  its width in pixels; may be broken
/// [any]
[[nodiscard]] std::vector<std::uint32_t> inked(std::span<const std::uint8_t> alpha, int size, Ink ink, double outline);

/// The outline's width on an icon of so many pixels. [any]
[[nodiscard]] double outlineWidth(int size);

}  // namespace quillmere
