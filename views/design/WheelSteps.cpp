// The sums behind scrolling over a slider.
#include "views/design/WheelSteps.h"

#include <cstdlib>

namespace quillmere {
namespace {

constexpr int notchAngle = 120;
// Ten points a notch: over a row that is five percent, the step of the desktop's own volume wheels.
constexpr double pointsPerNotch = 10.0;
// A notch of a touchpad's virtual wheel is about fifteen points of finger travel.
constexpr int anglePerTouchpadPoint = 8;

int angleOf(const ScrollEvent& event) { return event.angle != 0 ? event.angle : event.pixels * anglePerTouchpadPoint; }

}  // namespace

int WheelSteps::step(const ScrollEvent& event) {
  const int angle = angleOf(event);
  if (angle == 0) return -1;
  const int direction = angle > 0 ? 1 : -1;
  if (std::abs(angle) >= notchAngle) {
    pendingAngle_ = 0;
    return direction;
  }
  if (pendingAngle_ * direction < 0) pendingAngle_ = 0;
  pendingAngle_ += angle;
  if (std::abs(pendingAngle_) < notchAngle) return 0;
  pendingAngle_ -= direction * notchAngle;
  return direction;
}

double scrollDistance(const ScrollEvent& event) {
  if (event.fromTouchpad) {
    return event.pixels != 0 ? event.pixels : static_cast<double>(event.angle) / anglePerTouchpadPoint;
  }
  return angleOf(event) * pointsPerNotch / notchAngle;
}

}  // namespace quillmere
