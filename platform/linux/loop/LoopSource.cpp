// A function object as GLib's callback.
#include "loop/LoopSource.h"

#include <utility>

namespace quillmere {

void setWork(GSource* source, std::function<gboolean()> work) {
  g_source_set_callback(
      source, [](gpointer data) -> gboolean { return (*static_cast<std::function<gboolean()>*>(data))(); },
      new std::function<gboolean()>(std::move(work)),
      [](gpointer data) { delete static_cast<std::function<gboolean()>*>(data); });
}

}  // namespace quillmere
