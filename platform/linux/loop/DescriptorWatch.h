// What comes at a descriptor, on the host's loop.
#pragma once

#include <functional>

#include "../loop/LoopSource.h"

namespace quillmere {

class HostLoop;

/// [host]. The descriptor stays open for as long as it is watched.
class DescriptorWatch {
 public:
  /// `came` is told what there is of `wanted`, of errors and of the other end's end. It may end the watch.
  DescriptorWatch(HostLoop& loop, int descriptor, GIOCondition wanted, std::function<void(GIOCondition come)> came);
  /// Of errors and the end it is told in any case, again and again until the watch ends.
  void want(GIOCondition wanted);

 private:
  LoopSource source_;
  gpointer tag_;
};

/// For those who wait to be able to write as well, and those who don't. [any]
inline constexpr auto readable = G_IO_IN;
inline constexpr auto readableOrWritable = static_cast<GIOCondition>(G_IO_IN | G_IO_OUT);

}  // namespace quillmere
