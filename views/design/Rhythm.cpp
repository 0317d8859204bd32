// The formulas of shimmer and pulse.
#include "views/design/Rhythm.h"

#include <cmath>

namespace quillmere::rhythm {

double shimmerPhase(double seconds) { return std::sin(seconds * 3) * 0.5 + 0.5; }

double shimmerOpacity(double phase) { return 0.15 + 0.18 * phase; }

double livePulse(double seconds) { return std::sin(seconds * 4) * 0.5 + 0.5; }

double haloScale(double pulse) { return 0.85 + 0.4 * pulse; }

}  // namespace quillmere::rhythm
