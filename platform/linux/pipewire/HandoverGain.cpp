#include "HandoverGain.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillmere::pipewire {
namespace {

constexpr float inaudible = 1e-4F;
constexpr float closeToUnity = 1e-4F;

QUILLMERE_REALTIME bool isSilent(const float* samples, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (samples[i] != 0.0F) return false;
  }
  return true;
}

}  // namespace

float HandoverGain::coefficient(double rate) {
  return static_cast<float>(1.0 - std::exp(-1.0 / (std::max(rate, 8000.0) * glideSeconds)));
}

void HandoverGain::beginPlain() {
  releasing_ = false;
  share_ = 0.0F;
}

void HandoverGain::beginFrom(float gain) {
  releasing_ = false;
  share_ = 1.0F;
  silentFrames_ = 0;
  before_ = gain;
}

void HandoverGain::release(float appliedGain) {
  gain_ = appliedGain + share_ * (before_ - appliedGain);
  releasing_ = true;
  heldFrames_ = 0;
  share_ = 0.0F;
}

void HandoverGain::blend(const float* input, float* output, std::size_t frames, float coefficient,
                         std::size_t patienceFrames) {
  if (share_ == 0.0F) return;
  if (share_ == 1.0F && isSilent(input, 2 * frames)) {
    silentFrames_ += frames;
    if (silentFrames_ >= patienceFrames) share_ = 0.0F;
    return;
  }
  float share = share_;
  const float before = before_;
  for (std::size_t i = 0; i < frames; ++i) {
    share -= share * coefficient;
    const float rest = 1.0F - share;
    const float direct = share * before;
    output[2 * i] = rest * output[2 * i] + direct * input[2 * i];
    output[2 * i + 1] = rest * output[2 * i + 1] + direct * input[2 * i + 1];
  }
  share_ = share < inaudible ? 0.0F : share;
}

void HandoverGain::play(const float* input, float* output, std::size_t frames, float coefficient,
                        std::size_t holdFrames) {
  if (gain_ == 1.0F) {
    std::memcpy(output, input, frames * 2 * sizeof(float));
    return;
  }
  const std::size_t held = heldFrames_ < holdFrames ? std::min(frames, holdFrames - heldFrames_) : 0;
  heldFrames_ += held;
  float gain = gain_;
  for (std::size_t i = 0; i < held; ++i) {
    output[2 * i] = gain * input[2 * i];
    output[2 * i + 1] = gain * input[2 * i + 1];
  }
  for (std::size_t i = held; i < frames; ++i) {
    gain += (1.0F - gain) * coefficient;
    output[2 * i] = gain * input[2 * i];
    output[2 * i + 1] = gain * input[2 * i + 1];
  }
  gain_ = std::fabs(1.0F - gain) < closeToUnity ? 1.0F : gain;
}

}  // namespace quillmere::pipewire
