// What breathes and pulses: phases from the seconds of the wall clock, all between 0 and 1.
#pragma once

namespace quillmere::rhythm {

/// sin(t * 3) brought to 0 through 1: the shimmer of a sounding slider, about 2.1 s long.
[[nodiscard]] double shimmerPhase(double seconds);
/// The opacity of the shimmer at a phase: 0.15 + 0.18 * phase.
[[nodiscard]] double shimmerOpacity(double phase);
/// sin(t * 4) brought to 0 through 1.
[[nodiscard]] double livePulse(double seconds);
/// The scale of the live pulse's halo: 0.85 + 0.4 * pulse.
[[nodiscard]] double haloScale(double pulse);

}  // namespace quillmere::rhythm
