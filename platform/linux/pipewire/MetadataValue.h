// The JSON values of the session manager's metadata. Pure: [any].
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmere::pipewire {

/// {"name": "..."}: the name; absent for anything else.
[[nodiscard]] std::optional<std::string> nameFromMetadata(std::string_view json);
/// The reverse; broken UTF-8 is replaced.
[[nodiscard]] std::string metadataFromName(std::string_view name);

}  // namespace quillmere::pipewire
