// Link groups: nodes that hand sound to each other inside a program, as a filter's two sides do.
#pragma once

#include <string_view>

#include "Properties.h"

namespace quillmere::pipewire {

/// One name or several, parted by commas.
inline constexpr std::string_view linkGroupKey = "node.link-group";

/// Whether two values of that key have a name in common. [any]
[[nodiscard]] bool shareLinkGroup(std::string_view one, std::string_view other);

/// Whether sound that goes in at one of these two nodes can come out at the other; not so with two that both play, or
/// both record. [any]
[[nodiscard]] bool areTwoSides(const Properties& one, const Properties& other);

}  // namespace quillmere::pipewire
