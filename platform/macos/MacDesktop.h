// The desktop of a Mac, as the windows ask it.
#pragma once

#include "platform/Desktop.h"

namespace quillmere {

/// Browsers need nothing here: they are asked by script. [main]
[[nodiscard]] Desktop makeMacDesktop();

}  // namespace quillmere
