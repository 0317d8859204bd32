// From wheel and touchpad events to the two measures that sliders use:
// whole steps for the slider's own rule, and a scroll distance for those who bring a rule of their own.
#pragma once

namespace quillmere {

/// One scroll event's vertical part. A notch of a common wheel is an angle of 120.
struct ScrollEvent {
  int angle = 0;
  int pixels = 0;
  bool fromTouchpad = false;
};

/// Adds up high-resolution events. [main]
class WheelSteps {
 public:
  /// The direction to step in: +1, -1, or 0 while the small turns of a fine wheel don't make up a notch.
  /// A whole notch or more is one step whatever its size, and an event without vertical part steps downwards.
  int step(const ScrollEvent& event);
  /// Forgets a begun notch: the pointer has left.
  void reset() { pendingAngle_ = 0; }

 private:
  int pendingAngle_ = 0;
};

/// Points of scrolling: those of a touchpad, ten a notch of a wheel and fractions for fine wheels. Upwards is positive.
[[nodiscard]] double scrollDistance(const ScrollEvent& event);

}  // namespace quillmere
