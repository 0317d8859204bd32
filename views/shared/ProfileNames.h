// What profiles are called before anybody has named them.
#pragma once

#include <QString>
#include <cstddef>

namespace quillmere {

/// The name of a new profile where there are `count` already: "Untitled 4". Not unique. [main]
[[nodiscard]] QString nextProfileName(std::size_t count);

}  // namespace quillmere
