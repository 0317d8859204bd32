// The machine that a Mac is: Core Audio, the user's defaults, the workspace, scripts, keys and sounds behind the ports.
#pragma once

#include "platform/Machine.h"

namespace quillmere {

/// Without a release feed, and without companions of browsers: those are asked by script. [main]
[[nodiscard]] Machine makeMacMachine();

}  // namespace quillmere
