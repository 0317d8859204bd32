// Whether the sound that an application's tap takes in is there at the moment.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "engine/IOProcessor.h"
#include "runtime/Clocks.h"

namespace quillmere {

/// The peak of the IO's words decays in IO cycles only, and on some hosts the cycles stop with the application: such a
/// peak would stand for ever. So it counts for as long as cycles go on writing it. [any], one caller at a time.
class InputActivity {
 public:
  /// A peak is taken for news for this long after the look that found it newly written: two looks in quick succession
  /// give the same answer. Shorter than the 150 ms between two polls, so that the first one without a cycle tells.
  /// A host whose cycles are longer than its polls are apart may be told active, not active, active by turns.
  static constexpr Duration lifeOfAPeak = std::chrono::milliseconds(100);

  /// Begins as silent, whatever was written before.
  explicit InputActivity(std::shared_ptr<const IOWords> words);

  /// Whether a cycle since the last look, or one not longer ago than `lifeOfAPeak`, has left a peak of more than 0.001.
  [[nodiscard]] bool isHeard(MonotonicTime now);
  /// Whether the next look may find another answer though no cycle comes, or cycles are coming. As of the last look.
  [[nodiscard]] bool isMoving() const { return isNews_; }

 private:
  std::shared_ptr<const IOWords> words_;
  std::uint32_t peaksSeen_;
  /// Of the look that last found the peak newly written.
  MonotonicTime seenAt_{};
  bool isNews_ = false;
};

}  // namespace quillmere
