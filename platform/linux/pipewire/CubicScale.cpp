#include "CubicScale.h"

#include <algorithm>
#include <cmath>

namespace quillmere::pipewire {

float scalarFromLinear(float linear) {
  if (!(linear > 0.0F)) return 0.0F;
  return std::min(std::cbrt(linear), 1.0F);
}

float linearFromScalar(float scalar) {
  if (!(scalar > 0.0F)) return 0.0F;
  const float limited = std::min(scalar, 1.0F);
  return limited * limited * limited;
}

float loudest(std::span<const float> linear) {
  float most = 0.0F;
  for (const float value : linear) most = std::max(most, value);
  return most;
}

std::vector<float> withLoudest(std::span<const float> linear, float newLoudest) {
  const float old = loudest(linear);
  std::vector<float> scaled(linear.begin(), linear.end());
  for (float& value : scaled) value = old > 0.0F ? std::max(value, 0.0F) / old * newLoudest : newLoudest;
  return scaled;
}

}  // namespace quillmere::pipewire
