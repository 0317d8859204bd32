// Masks become pixels.
#include "statusitem/PanelIcon.h"

#include <vector>

namespace quillmere::statusitem {

bus::Variant iconPixmaps(Ink ink) {
  GVariantBuilder pixmaps;
  g_variant_builder_init(&pixmaps, G_VARIANT_TYPE("a(iiay)"));
  std::vector<std::uint8_t> pixels;
  for (const auto& mask : panelIconMasks()) {
    pixels.clear();
    pixels.reserve(mask.alpha.size() * 4);
    for (const auto pixel : inked(mask.alpha, mask.size, ink, outlineWidth(mask.size))) {
      for (const int shift : {24, 16, 8, 0}) pixels.push_back(static_cast<std::uint8_t>(pixel >> shift));
    }
    g_variant_builder_add(&pixmaps, "(ii@ay)", mask.size, mask.size,
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(), pixels.size(), 1));
  }
  return bus::owned(g_variant_builder_end(&pixmaps));
}

}  // namespace quillmere::statusitem
