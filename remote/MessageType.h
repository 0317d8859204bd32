// What a message says that it is.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace quillmere {

/// The text under "type", which every message has; empty for what is no message of ours.
[[nodiscard]] std::string messageType(const nlohmann::json& message);

}  // namespace quillmere
