// The one way a countdown is written.
#include "core/RemainingText.h"

#include <algorithm>
#include <cmath>

namespace quillmere {

std::string formatRemaining(Date endsAt, Date now) {
  // A date beyond any countdown must not overflow the conversion; NaN counts as past.
  const double seconds = std::trunc(now.secondsUntil(endsAt));
  const long total = seconds > 0.0 ? static_cast<long>(std::min(seconds, 1e15)) : 0L;
  const auto rest = std::to_string(total % 60);
  return std::to_string(total / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}  // namespace quillmere
