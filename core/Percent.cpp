// Gains as percentages.
#include "core/Percent.h"

#include <cmath>
#include <limits>

namespace quillmere {

int percentOf(float gain) {
  const float percent = gain * 100.0F;
  if (std::isnan(percent)) return 0;
  // The largest int is no float; the float nearest to it is already out of range.
  if (percent >= -static_cast<float>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::max();
  if (percent <= static_cast<float>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
  return static_cast<int>(percent);
}

}  // namespace quillmere
