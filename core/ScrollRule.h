// What a scroll does to a level, wherever it is scrolled: over a slider, over a row, over the icon in the panel.
// Why: docs/decisions/0019-a-scroll-counts-in-units.md
#pragma once

namespace quillmere {

/// Of the full scale, for each unit.
inline constexpr double gainPerScrollUnit = 0.005;
/// A notch of a common wheel, which is one step.
inline constexpr double scrollUnitsPerNotch = 4;
inline constexpr double gainPerScrollStep = gainPerScrollUnit * scrollUnitsPerNotch;

/// Where an event stands in a movement of fingers on a touchpad; none for wheels, which only turn.
enum class ScrollPhase { none, begin, update, end };

/// One scroll event's vertical part; upwards, away from the user, is positive.
struct ScrollEvent {
  /// Eighths of a degree: 120 a notch of a common wheel, less for a fine one.
  int angle = 0;
  /// Where a touchpad tells them; a driver may make them up for a wheel.
  int pixels = 0;
  bool fromTouchpad = false;
  ScrollPhase phase = ScrollPhase::none;
};

/// The event's distance: four units a notch of a wheel and its share for a part of one; a touchpad's points. [any]
[[nodiscard]] double scrollUnits(const ScrollEvent& event);

/// For what moves in whole steps. An event is one step at most, whatever its size; less than a notch counts as the part
/// of a step that it is, and parts add up. Not safe to share between threads. [any]
class ScrollSteps {
 public:
  /// +1, -1, or 0 while the parts don't make up a step. An event without a vertical part steps downwards, unless it is
  /// one of a touchpad's: there it moves nothing.
  int step(const ScrollEvent& event);
  /// Forgets a begun step: the pointer has left.
  void reset() { pending_ = 0; }

 private:
  /// As a wheel would have turned, in eighths of a degree: whole numbers, so that parts add up.
  int pending_ = 0;
};

}  // namespace quillmere
