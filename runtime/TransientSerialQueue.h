// A serial queue whose thread comes and goes with the work.
#pragma once

#include <memory>
#include <string>

#include "runtime/SerialQueue.h"

namespace quillmere {

/// Its thread goes when nothing has come for so long; the label names it for debuggers. As makeThreadSerialQueue
/// otherwise.
std::unique_ptr<SerialQueue> makeTransientSerialQueue(std::string label, Duration idleTime);

}  // namespace quillmere
