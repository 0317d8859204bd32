// A thread alarm that the kernel keeps, and that rings on the host's loop.
#pragma once

#include <functional>
#include <memory>

#include "runtime/ThreadAlarm.h"

namespace quillmere {

/// `ring` is called on [host]. [any]
[[nodiscard]] std::unique_ptr<ThreadAlarm> makeKernelAlarm(std::function<void()> ring);

}  // namespace quillmere
