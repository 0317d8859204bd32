// A point in wall-clock time as the settings store it.
// The epoch is 2001-01-01T00:00:00Z, so a Date is written to JSON as the number it holds.
#pragma once

#include <compare>

namespace quillmere {

struct Date {
  /// Seconds since 2001-01-01T00:00:00Z, with fraction; negative before it.
  double secondsSinceReference = 0.0;

  /// Unix time of the reference date, in seconds.
  static constexpr double referenceUnixSeconds = 978307200.0;

  [[nodiscard]] constexpr Date advancedBy(double seconds) const { return Date{secondsSinceReference + seconds}; }
  /// `other` minus this, in seconds.
  [[nodiscard]] constexpr double secondsUntil(Date other) const {
    return other.secondsSinceReference - secondsSinceReference;
  }

  friend constexpr bool operator==(const Date&, const Date&) = default;
  friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

}  // namespace quillmere
