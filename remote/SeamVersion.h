// What the two programs must have in common to understand each other.
#pragma once

#include <string>

namespace quillmere {

/// The program's version, and a digest of all that crosses between its halves: two halves with the same text were made
/// for each other. [any]
[[nodiscard]] std::string seamVersion();

}  // namespace quillmere
