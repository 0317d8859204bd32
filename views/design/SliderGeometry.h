// Where a level slider's parts lie and what a place on it stands for.
// Plain arithmetic on values and points; knows nothing of windows.
#pragma once

namespace quillmere {

/// lower to upper is the range of the value; width and thumbSize are points. [any]
struct SliderGeometry {
  double lower = 0;
  double upper = 1;
  double width = 0;
  double thumbSize = 14;

  /// The share of the range below the value; not limited. 0 for a range without width and for a value that is no
  /// number.
  [[nodiscard]] double fraction(double value) const;
  /// Kept half a thumb away from both ends; of two bounds that cross, the leading one holds.
  [[nodiscard]] double thumbCentre(double value) const;
  /// Runs to the true position, not to the thumb's; at least 0.
  [[nodiscard]] double fillWidth(double value) const;
  /// The value at x points from the leading edge; beyond either end it is the bound.
  [[nodiscard]] double valueAt(double x) const;
  /// The value within the range; the lower bound for what is no number.
  [[nodiscard]] double limited(double value) const;
};

}  // namespace quillmere
