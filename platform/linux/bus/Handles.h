// GLib's values and objects with owners. Values may go from thread to thread; an object belongs to whom it belongs in
// GLib. [any]
#pragma once

#include <gio/gio.h>

#include <memory>

namespace quillmere::bus {

struct FreeVariant {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Variant = std::unique_ptr<GVariant, FreeVariant>;

struct FreeObject {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, FreeObject>;

/// Takes over a value as GLib's makers return it, floating.
inline Variant owned(GVariant* value) { return Variant(g_variant_ref_sink(value)); }

inline bool isOfType(GVariant* value, const char* type) {
  return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE(type)) != FALSE;
}

}  // namespace quillmere::bus
