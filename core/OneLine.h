// Names on one line.
#pragma once

#include <string>
#include <string_view>

namespace quillmere {

/// The text with a blank for each control character, line end or separator of lines or paragraphs in it, and for each
/// run of them. [any]
[[nodiscard]] std::string oneLine(std::string_view text);

}  // namespace quillmere
