// The sums behind scrolling.
#include "core/ScrollRule.h"

#include <algorithm>
#include <cmath>

namespace quillmere {

namespace {

constexpr double anglePerNotch = 120;
/// A touchpad that tells an angle alone means so much of it by a point of its fingers' way.
constexpr double anglePerPoint = 8;

}  // namespace

double scrollUnits(const ScrollEvent& event) {
  if (event.phase == ScrollPhase::begin || event.phase == ScrollPhase::end) return 0;
  if (event.fromTouchpad) return event.pixels != 0 ? event.pixels : event.angle / anglePerPoint;
  // What tells pixels and no angle is no wheel, whatever it calls itself.
  return event.angle != 0 ? event.angle * scrollUnitsPerNotch / anglePerNotch : event.pixels;
}

int ScrollSteps::step(const ScrollEvent& event) {
  const double units = std::clamp(scrollUnits(event), -scrollUnitsPerNotch, scrollUnitsPerNotch);
  if (units == 0) {
    if (event.phase != ScrollPhase::update) reset();
    return event.phase == ScrollPhase::none && !event.fromTouchpad ? -1 : 0;
  }
  // Turning back starts anew, and a whole notch leaves nothing over.
  if (pending_ * units < 0 || std::abs(units) >= scrollUnitsPerNotch) pending_ = 0;
  pending_ += units;
  if (std::abs(pending_) < scrollUnitsPerNotch) return 0;
  const int direction = units > 0 ? 1 : -1;
  pending_ -= direction * scrollUnitsPerNotch;
  return direction;
}

}  // namespace quillmere
