// The one way a gain becomes a percentage that people read.
#pragma once

namespace quillmere {

/// gain times 100 in single precision, truncated towards zero; 0.999 gives 99. NaN gives 0; the result is limited to
/// int.
[[nodiscard]] int percentOf(float gain);

}  // namespace quillmere
