// The portal's values.
#include "statusitem/PanelTheme.h"

#include <algorithm>
#include <array>

namespace quillmere::statusitem {

namespace {

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

}  // namespace

std::uint32_t panelInkRGB(std::optional<bool> prefersDark, std::string_view desktops) {
  const bool hasDarkBar = std::any_of(desktopsWithDarkBars.begin(), desktopsWithDarkBars.end(),
                                      [&](std::string_view name) { return isAmong(desktops, name); });
  if (hasDarkBar) return lightInkRGB;
  if (!prefersDark) return neutralInkRGB;
  return *prefersDark ? lightInkRGB : darkInkRGB;
}

std::optional<bool> prefersDark(GVariant* value) {
  if (value == nullptr) return std::nullopt;
  bus::Variant inner(g_variant_ref(value));
  while (bus::isOfType(inner.get(), "v")) inner.reset(g_variant_get_variant(inner.get()));
  if (!bus::isOfType(inner.get(), "u")) return std::nullopt;
  const auto scheme = g_variant_get_uint32(inner.get());
  if (scheme != 1 && scheme != 2) return std::nullopt;
  return scheme == 1;
}

}  // namespace quillmere::statusitem
