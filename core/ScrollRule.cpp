// The sums behind scrolling.
#include "core/ScrollRule.h"

#include <algorithm>
#include <cmath>

namespace quillmere {

namespace {

constexpr int notch = 120;
constexpr double anglePerUnit = notch / scrollUnitsPerNotch;
/// A touchpad that tells an angle alone means so much of it by a point of its fingers' way.
constexpr double anglePerPoint = 8;

}  // namespace

double scrollUnits(const ScrollEvent& event) {
  if (event.phase == ScrollPhase::begin || event.phase == ScrollPhase::end) return 0;
  if (event.fromTouchpad) return event.pixels != 0 ? event.pixels : event.angle / anglePerPoint;
  // What tells pixels and no angle is no wheel, whatever it calls itself.
  return event.angle != 0 ? event.angle / anglePerUnit : event.pixels;
}

int ScrollSteps::step(const ScrollEvent& event) {
  const int turn = std::clamp(static_cast<int>(std::lround(scrollUnits(event) * anglePerUnit)), -notch, notch);
  if (turn == 0) {
    if (event.phase != ScrollPhase::update) reset();
    return event.phase == ScrollPhase::none && !event.fromTouchpad ? -1 : 0;
  }
  const int direction = turn > 0 ? 1 : -1;
  // Turning back starts anew, and a whole notch leaves nothing over.
  if (pending_ * direction < 0 || turn * direction == notch) pending_ = 0;
  pending_ += turn;
  if (pending_ * direction < notch) return 0;
  pending_ -= direction * notch;
  return direction;
}

}  // namespace quillmere
