// Reads a recording of the signal player's counter: what was lost, doubled or silenced, to the sample.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace quillmere::test {

/// A place where the counter does not go on by one.
struct Break {
  std::size_t at = 0;
  /// Silent samples between the two ends.
  std::size_t silence = 0;
  /// Samples of the source that never came (positive) or came again (negative), from -8192 to 8192.
  long lost = 0;
};

/// Everything from the first sound to the last.
[[nodiscard]] std::vector<Break> breaksIn(std::span<const float> recording);

}  // namespace quillmere::test
