// The phase of a focus block: focus or break, each with its end, or idle.
// Equal when the case and, where there is one, the date are equal.
#pragma once

#include "core/Date.h"

namespace quillmere {

struct PomodoroPhase {
  enum class Kind { focus, rest, idle };

  Kind kind = Kind::idle;
  /// The wall-clock end of this phase; the reference date when idle.
  Date endsAt;

  [[nodiscard]] static PomodoroPhase focus(Date endsAt) { return {Kind::focus, endsAt}; }
  /// The break after the focus.
  [[nodiscard]] static PomodoroPhase rest(Date endsAt) { return {Kind::rest, endsAt}; }
  [[nodiscard]] static PomodoroPhase idle() { return {}; }

  friend bool operator==(const PomodoroPhase&, const PomodoroPhase&) = default;
};

}  // namespace quillmere
