// What a Mac does for the program's threads.
#pragma once

#include "runtime/HostThreads.h"

namespace quillmere {

/// Names show in debuggers, and the engine's thread comes before those that nobody waits for. [any]
[[nodiscard]] HostThreads macThreads();

}  // namespace quillmere
