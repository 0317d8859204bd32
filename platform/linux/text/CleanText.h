// Texts from outside, made fit to keep and to show.
// Everything that another program wrote passes through here once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmere {

/// Valid UTF-8 of at most `maxBytes`, cut between characters; broken bytes become U+FFFD, control characters blanks,
/// and blanks at either end go. [any]
[[nodiscard]] std::string cleanText(std::string_view text, std::size_t maxBytes);

/// Limits, in bytes, for what people read and for what names an application.
inline constexpr std::size_t maxDisplayNameBytes = 256;
inline constexpr std::size_t maxIdentifierBytes = 255;
inline constexpr std::size_t maxTrackTextBytes = 1024;

}  // namespace quillmere
