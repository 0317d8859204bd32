#include "DetourMix.h"

#include <algorithm>
#include <utility>

namespace quillmere::pipewire {
namespace {

QUILLMERE_REALTIME void silence(float* output, std::size_t frames) {
  if (output != nullptr) std::fill_n(output, frames, 0.0F);
}

}  // namespace

DetourMix::DetourMix(std::vector<ChannelShare> shares) : shares_(std::move(shares)) {}

bool DetourMix::isClosed() const {
  return !isOpen_.load(std::memory_order_relaxed) && part_.load(std::memory_order_relaxed) == 0.0F;
}

void DetourMix::process(const Cycle& cycle) {
  const float target = isOpen_.load(std::memory_order_relaxed) ? 1.0F : 0.0F;
  const float first = part_.load(std::memory_order_relaxed);
  const auto step = static_cast<float>(1.0 / (glideSeconds * cycle.rate)) * (target > first ? 1.0F : -1.0F);
  // Counted from the start of the cycle, so that all inputs get the same.
  const auto partAt = [&](std::size_t frame) {
    if (first == target) return target;
    const float part = first + step * static_cast<float>(frame + 1);
    return std::clamp(part, std::min(first, target), std::max(first, target));
  };

  silence(cycle.left, cycle.frames);
  silence(cycle.right, cycle.frames);
  const auto count = std::min({shares_.size(), cycle.inputs.size(), cycle.inverses.size()});
  for (std::size_t place = 0; place < count; ++place) {
    const auto* input = cycle.inputs[place];
    auto* inverse = cycle.inverses[place];
    silence(inverse, cycle.frames);
    if (input == nullptr || (first == 0.0F && target == 0.0F)) continue;
    const auto share = shares_[place];
    for (std::size_t frame = 0; frame < cycle.frames; ++frame) {
      const float sound = partAt(frame) * input[frame];
      if (inverse != nullptr) inverse[frame] = -sound;
      if (cycle.left != nullptr) cycle.left[frame] += share.left * sound;
      if (cycle.right != nullptr) cycle.right[frame] += share.right * sound;
    }
  }
  if (cycle.frames > 0) part_.store(partAt(cycle.frames - 1), std::memory_order_relaxed);
}

}  // namespace quillmere::pipewire
