// Whether cycles go on writing a peak.
#include "engine/InputActivity.h"

#include <bit>
#include <utility>

namespace quillmere {

namespace {

constexpr float threshold = std::bit_cast<float>(0x3a83126fU);  // 0.001

}  // namespace

InputActivity::InputActivity(std::shared_ptr<const IOWords> words)
    : words_(std::move(words)), peaksSeen_(words_->peaksWritten.load(std::memory_order_relaxed)) {}

bool InputActivity::isHeard(MonotonicTime now) {
  const auto written = words_->peaksWritten.load(std::memory_order_relaxed);
  if (written != peaksSeen_) {
    peaksSeen_ = written;
    seenAt_ = now;
    isNews_ = true;
  } else if (now - seenAt_ >= lifeOfAPeak) {
    isNews_ = false;
  }
  return isNews_ && words_->recentInputPeak.load(std::memory_order_relaxed) > threshold;
}

}  // namespace quillmere
