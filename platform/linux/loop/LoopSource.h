// A source of GLib's with an owner.
#pragma once

#include <glib.h>

#include <functional>
#include <memory>

namespace quillmere {

/// What a source runs; what it returns is GLib's G_SOURCE_CONTINUE or G_SOURCE_REMOVE. The work may end its own source,
/// and stays whole until it has returned. Before the source is attached. [any]
void setWork(GSource* source, std::function<gboolean()> work);

/// [host]
struct EndSource {
  void operator()(GSource* source) const {
    g_source_destroy(source);
    g_source_unref(source);
  }
};
/// Its work doesn't begin any more once this has gone. Goes on [host].
using LoopSource = std::unique_ptr<GSource, EndSource>;

}  // namespace quillmere
