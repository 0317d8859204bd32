// The version of this program.
#pragma once

#include <string_view>

namespace quillmere {

/// [any]
[[nodiscard]] std::string_view appVersion();

}  // namespace quillmere
