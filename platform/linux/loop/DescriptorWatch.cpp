// A source that is ready by its descriptor.
#include "loop/DescriptorWatch.h"

#include <utility>

#include "loop/HostLoop.h"

namespace quillmere {

DescriptorWatch::DescriptorWatch(HostLoop& loop, int descriptor, GIOCondition wanted,
                                 std::function<void(GIOCondition come)> came) {
  static GSourceFuncs functions{
      nullptr, nullptr, [](GSource*, GSourceFunc callback, gpointer data) { return callback(data); },
      nullptr, nullptr, nullptr};
  source_.reset(g_source_new(&functions, sizeof(GSource)));
  tag_ = g_source_add_unix_fd(source_.get(), descriptor, wanted);
  setWork(source_.get(), [source = source_.get(), tag = tag_, came = std::move(came)] {
    came(g_source_query_unix_fd(source, tag));
    return G_SOURCE_CONTINUE;
  });
  g_source_attach(source_.get(), loop.context());
}

void DescriptorWatch::want(GIOCondition wanted) { g_source_modify_unix_fd(source_.get(), tag_, wanted); }

}  // namespace quillmere
