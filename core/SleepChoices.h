// The lengths that a sleep timer is offered with.
#pragma once

#include <array>

namespace quillmere {

/// Minutes.
inline constexpr std::array sleepChoices{15, 30, 45, 60, 90};

}  // namespace quillmere
