// The order in which names are listed to people.
#pragma once

#include <string_view>

namespace quillmere {

/// Compares two UTF-8 texts as a list of names should be ordered: ignoring case, by the user's locale where one is set.
/// Negative, zero or positive; zero only for names that differ in case alone. A byte that is not UTF-8 counts as a
/// character of its own, behind all others. The order is total. The locale is the environment's at the first call.
/// [any]
[[nodiscard]] int compareNames(std::string_view left, std::string_view right);

}  // namespace quillmere
