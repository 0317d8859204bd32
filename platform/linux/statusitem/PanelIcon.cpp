// Masks become pixels.
#include "statusitem/PanelIcon.h"

#include <vector>

namespace quillmere::statusitem {

bus::Variant iconPixmaps(std::uint32_t color) {
  GVariantBuilder pixmaps;
  g_variant_builder_init(&pixmaps, G_VARIANT_TYPE("a(iiay)"));
  std::vector<std::uint8_t> pixels;
  for (const auto& mask : panelIconMasks()) {
    pixels.clear();
    pixels.reserve(mask.alpha.size() * 4);
    for (const auto alpha : mask.alpha) {
      // Clear pixels have the colour too: a host that scales the picture mixes it into the edges.
      pixels.insert(pixels.end(), {alpha, static_cast<std::uint8_t>(color >> 16), static_cast<std::uint8_t>(color >> 8),
                                   static_cast<std::uint8_t>(color)});
    }
    g_variant_builder_add(&pixmaps, "(ii@ay)", mask.size, mask.size,
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(), pixels.size(), 1));
  }
  return bus::owned(g_variant_builder_end(&pixmaps));
}

}  // namespace quillmere::statusitem
