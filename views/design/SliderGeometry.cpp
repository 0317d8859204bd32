// The arithmetic of the level slider.
#include "views/design/SliderGeometry.h"

#include <algorithm>
#include <cmath>

namespace quillmere {

double SliderGeometry::fraction(double value) const {
  if (!(upper - lower > 0) || !std::isfinite(value)) return 0;
  return (value - lower) / (upper - lower);
}

double SliderGeometry::thumbCentre(double value) const {
  return std::max(std::min(width * fraction(value), width - thumbSize / 2), thumbSize / 2);
}

double SliderGeometry::fillWidth(double value) const { return std::max(width * fraction(value), 0.0); }

double SliderGeometry::valueAt(double x) const {
  const double share = width > 0 && std::isfinite(x) ? std::clamp(x / width, 0.0, 1.0) : 0.0;
  return lower + (upper - lower) * share;
}

double SliderGeometry::limited(double value) const {
  if (std::isnan(value)) return lower;
  return std::max(std::min(value, upper), lower);
}

}  // namespace quillmere
