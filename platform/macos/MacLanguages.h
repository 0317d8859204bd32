// The languages that a Mac's user wants to read, best first.
#pragma once

#include <string>
#include <vector>

namespace quillmere {

/// "de_AT", "en". [any]
[[nodiscard]] std::vector<std::string> preferredLanguages();

}  // namespace quillmere
