// Inks and outlines.
#include "core/PanelInk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace quillmere {

namespace {

constexpr std::uint32_t lightRGB = 0xF2F2F2;
constexpr std::uint32_t darkRGB = 0x242424;
/// Dark enough to part a mark from its ground, and not a second mark.
constexpr double outlineOpacity = 0.9;
/// As a share of an icon: one pixel at the size that most panels ask for.
constexpr double outlineShare = 1.0 / 22.0;
constexpr double thinnestOutline = 1.0;

constexpr std::array<std::string_view, 3> desktopsWithDarkBars{"GNOME", "Unity", "Pantheon"};

/// The list of names is separated by colons.
bool isAmong(std::string_view desktops, std::string_view name) {
  while (!desktops.empty()) {
    const auto colon = std::min(desktops.find(':'), desktops.size());
    if (desktops.substr(0, colon) == name) return true;
    desktops.remove_prefix(std::min(colon + 1, desktops.size()));
  }
  return false;
}

/// How far a pixel of the outline is covered: by the nearest of the drawing's pixels within its reach.
double covered(std::span<const std::uint8_t> alpha, int size, int x, int y, double reach) {
  const int steps = static_cast<int>(std::ceil(reach));
  double most = 0;
  for (int down = -steps; down <= steps; ++down) {
    for (int right = -steps; right <= steps; ++right) {
      const int column = x + right;
      const int row = y + down;
      if (column < 0 || row < 0 || column >= size || row >= size) continue;
      const double near = std::clamp(reach + 1 - std::hypot(right, down), 0.0, 1.0);
      const auto index =
          static_cast<std::size_t>(row) * static_cast<std::size_t>(size) + static_cast<std::size_t>(column);
      most = std::max(most, near * alpha[index] / 255);
    }
  }
  return most;
}

std::uint32_t mixed(std::uint32_t over, double opacity, std::uint32_t under, double underOpacity) {
  const double whole = opacity + underOpacity * (1 - opacity);
  if (whole <= 0) return under;
  const double share = opacity / whole;
  std::uint32_t pixel = static_cast<std::uint32_t>(std::lround(whole * 255)) << 24;
  for (const int shift : {16, 8, 0}) {
    const auto channel = [shift](std::uint32_t colour) { return static_cast<double>((colour >> shift) & 0xFF); };
    pixel |= static_cast<std::uint32_t>(std::lround(channel(over) * share + channel(under) * (1 - share))) << shift;
  }
  return pixel;
}

}  // namespace

InkColours coloursOf(Ink ink) {
  switch (ink) {
    case Ink::light:
      return {lightRGB, std::nullopt};
    case Ink::dark:
      return {darkRGB, std::nullopt};
    case Ink::lightOutlined:
      return {lightRGB, darkRGB};
    case Ink::darkOutlined:
      break;
  }
  return {darkRGB, lightRGB};
}

Ink panelInk(std::optional<bool> prefersDark, std::string_view desktops) {
  const bool hasDarkBar = std::any_of(desktopsWithDarkBars.begin(), desktopsWithDarkBars.end(),
                                      [desktops](std::string_view name) { return isAmong(desktops, name); });
  if (hasDarkBar) return Ink::light;
  return prefersDark.value_or(true) ? Ink::lightOutlined : Ink::darkOutlined;
}

Ink menuInk(std::optional<bool> prefersDark) {
  if (!prefersDark) return Ink::darkOutlined;
  return *prefersDark ? Ink::light : Ink::dark;
}

std::vector<std::uint32_t> inked(std::span<const std::uint8_t> alpha, int size, Ink ink, double outline) {
  const auto colours = coloursOf(ink);
  const auto ground = colours.outline.value_or(colours.fill);
  std::vector<std::uint32_t> pixels;
  pixels.reserve(alpha.size());
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double around = colours.outline ? outlineOpacity * covered(alpha, size, x, y, outline) : 0;
      pixels.push_back(mixed(colours.fill, alpha[pixels.size()] / 255.0, ground, around));
    }
  }
  return pixels;
}

double outlineWidth(int size) { return std::max(thinnestOutline, size * outlineShare); }

}  // namespace quillmere
