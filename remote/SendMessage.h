// The way out of one process into another, as those see it who have something to say; and a message on the line.
#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace quillmere {

/// Callable on any thread; into a closed channel nothing happens.
using SendMessage = std::function<void(const nlohmann::json& message)>;

/// A message as bytes for a channel. Texts may hold any bytes.
[[nodiscard]] std::string encodeMessage(const nlohmann::json& message);
/// Absent for bytes that are no message.
[[nodiscard]] std::optional<nlohmann::json> decodeMessage(const std::string& bytes);

}  // namespace quillmere
