// The portal's values.
#include "statusitem/ColorScheme.h"

namespace quillmere::statusitem {

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
