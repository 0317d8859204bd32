// The one way a countdown is written.
#pragma once

#include <string>

#include "core/Date.h"

namespace quillmere {

/// Minutes and seconds from `now` to `endsAt`, "12:34": truncated, at least 0:00; minutes are not carried into hours.
[[nodiscard]] std::string formatRemaining(Date endsAt, Date now);

}  // namespace quillmere
