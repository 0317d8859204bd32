// What Linux does for the program's threads.
#pragma once

#include "runtime/HostThreads.h"

namespace quillmere {

/// The kernel keeps the time for idle threads and picks the one to wake; names show in tools. [any]
[[nodiscard]] HostThreads linuxThreads();

}  // namespace quillmere
