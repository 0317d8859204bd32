// A number of applications in words.
#pragma once

#include <QString>
#include <cstddef>

namespace quillmere {

/// "1 app", "3 apps", "0 apps". [main]
[[nodiscard]] QString countedApps(std::size_t count);

}  // namespace quillmere
