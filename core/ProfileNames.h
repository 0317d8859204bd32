// What profiles are called before anybody has named them.
#pragma once

#include <string>
#include <vector>

#include "core/Profile.h"

namespace quillmere {

/// "Untitled" and the number of the profile that comes next, whether or not there is one of that name.
[[nodiscard]] inline std::string nextProfileName(const std::vector<Profile>& profiles) {
  return "Untitled " + std::to_string(profiles.size() + 1);
}

}  // namespace quillmere
