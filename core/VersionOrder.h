// Versions as texts of numbers separated by dots.
#pragma once

#include <string_view>

namespace quillmere {

/// Whether `current` is older than `latest`. Parts that are no decimal integers are left out, missing ones count as 0:
/// 1.2 is not older than 1.2.0, and 1.9 is older than 1.10. [any]
[[nodiscard]] bool isOutdated(std::string_view current, std::string_view latest);

}  // namespace quillmere
