// Texts of others cut to a length that is safe to hand on and to show.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmere {

/// More of a title than any place shows, in bytes.
inline constexpr std::size_t longestShownTitle = 1024;
/// The same of an address, of which only the beginning counts.
inline constexpr std::size_t longestShownAddress = 1024;

/// The text, or where it is longer than `bytes`, which are at least 8, its beginning and its end with "…" between.
/// UTF-8 is cut between characters. [any]
[[nodiscard]] std::string shortened(std::string_view text, std::size_t bytes);

/// The first `bytes` of an address at most: not a part of a character, nor of one that is written with a "%". [any]
[[nodiscard]] std::string_view shortenedAddress(std::string_view address, std::size_t bytes);

}  // namespace quillmere
