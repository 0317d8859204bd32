// What the log says of a script that failed.
#pragma once

#include <string>

#include "platform/TabScripting.h"

namespace quillmere {

/// The error's message, or its description where it has none: on one line, and cut where it is endless. [any]
[[nodiscard]] std::string messageOf(const TabScriptResult::Error& error);

}  // namespace quillmere
