// A text without the blanks around it.
#pragma once

#include <string_view>

namespace quillmere {

/// The part of a UTF-8 text between the white space and line ends at both of its ends: Unicode's separators, the tab,
/// and the characters that end a line. Blanks without a width are none. [any]
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace quillmere
