// A text as a number.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quillmere {

/// The whole text as a decimal integer: a sign or none, then digits and nothing else. Absent for any other text, and
/// for a number that 64 bits don't hold. [any]
[[nodiscard]] std::optional<std::int64_t> decimalInteger(std::string_view text);

}  // namespace quillmere
