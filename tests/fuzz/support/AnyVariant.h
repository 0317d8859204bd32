// A value as the bus carries it: of any type, or what stands in a message's bytes.
#pragma once

#include <gio/gio.h>

#include <array>
#include <string>
#include <string_view>

#include "bus/Handles.h"
#include "support/Bytes.h"

namespace quillmere::fuzz {

/// As GDBus hands it out: every text is UTF-8 without a null byte.
inline GVariant* busText(std::string_view text) {
  char* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  return g_variant_new_take_string(valid);
}

/// Floating. `words` are the texts that mean something here.
template <typename Words>
GVariant* anyVariant(Bytes& in, const Words& words, int depth = 0) {
  const auto text = [&] { return in.byte() < 0xA0 ? std::string(in.oneOf(words)) : std::string(in.longText()); };
  switch (in.below(depth < 4 ? 16 : 9)) {
    case 0:
      return g_variant_new_boolean(in.flag() ? TRUE : FALSE);
    case 1:
      return g_variant_new_int32(in.number<std::int32_t>());
    case 2:
      return g_variant_new_uint32(in.number<std::uint32_t>());
    case 3:
      return g_variant_new_int64(in.number<std::int64_t>());
    case 4:
      return g_variant_new_uint64(in.number<std::uint64_t>());
    case 5:
      return g_variant_new_double(in.number<double>());
    case 6:
    case 7:
    case 8:
      return busText(text());
    case 9:
      return g_variant_new_object_path("/org/mpris/MediaPlayer2/Track/1");
    case 10:
    case 11: {
      GVariantBuilder texts;
      g_variant_builder_init(&texts, G_VARIANT_TYPE_STRING_ARRAY);
      for (auto left = in.byte() % 40; left > 0; --left) g_variant_builder_add_value(&texts, busText(text()));
      return g_variant_builder_end(&texts);
    }
    case 12:
      return g_variant_new_variant(anyVariant(in, words, depth + 1));
    case 13: {
      GVariantBuilder boxes;
      g_variant_builder_init(&boxes, G_VARIANT_TYPE("av"));
      for (auto left = in.below(4); left > 0; --left) {
        g_variant_builder_add(&boxes, "v", anyVariant(in, words, depth + 1));
      }
      return g_variant_builder_end(&boxes);
    }
    default: {
      GVariantBuilder entries;
      g_variant_builder_init(&entries, G_VARIANT_TYPE_VARDICT);
      for (auto left = in.below(8); left > 0; --left) {
        const bus::Variant key(g_variant_ref_sink(busText(text())));
        // The same key may come twice.
        g_variant_builder_add(&entries, "{sv}", g_variant_get_string(key.get(), nullptr),
                              anyVariant(in, words, depth + 1));
      }
      return g_variant_builder_end(&entries);
    }
  }
}

/// The bytes of a message's body taken for a value of this type, made whole as the bus does.
inline bus::Variant variantFromBytes(std::string_view bytes, const char* type) {
  void* const data = g_memdup2(bytes.data(), bytes.size());
  const bus::Variant raw(
      g_variant_ref_sink(g_variant_new_from_data(G_VARIANT_TYPE(type), data, bytes.size(), FALSE, g_free, data)));
  return bus::Variant(g_variant_get_normal_form(raw.get()));
}

}  // namespace quillmere::fuzz
