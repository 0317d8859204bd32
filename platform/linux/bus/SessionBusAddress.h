// Where the session bus listens.
// Looking for it starts nothing: no bus is launched for our sake.
#pragma once

#include <string>

namespace quillmere {

/// From the environment, or the bus's usual place in the runtime folder; empty if there is none. [any]
[[nodiscard]] std::string sessionBusAddress();

}  // namespace quillmere
