#include "TapFollower.h"

#include <algorithm>
#include <cmath>

#include "HandoverGain.h"

namespace quillmere::pipewire {
namespace {

/// Nearer to its target the gain is there: what is left is not heard, and would end as a denormal number.
constexpr float arrived = 1e-6F;

}  // namespace

TapFollower::TapFollower(std::shared_ptr<const std::atomic<float>> target, double rateHz)
    : target_(std::move(target)),
      coefficient_(HandoverGain::coefficient(rateHz)),
      gain_(target_->load(std::memory_order_relaxed)),
      block_([this](const AudioBufferList& input, const AudioBufferList& output) {
        process(input.buffers[0], output.buffers[0]);
      }) {}

void TapFollower::setRate(double rateHz) {
  coefficient_.store(HandoverGain::coefficient(rateHz), std::memory_order_relaxed);
}

void TapFollower::process(const AudioBuffer& input, AudioBuffer& output) {
  const auto samples = std::min(input.byteCount, output.byteCount) / sizeof(float);
  const float target = target_->load(std::memory_order_relaxed);
  const float coefficient = coefficient_.load(std::memory_order_relaxed);
  float gain = gain_.load(std::memory_order_relaxed);
  for (std::size_t place = 0; place + 1 < samples; place += 2) {
    gain += (target - gain) * coefficient;
    output.data[place] = gain * input.data[place];
    output.data[place + 1] = gain * input.data[place + 1];
  }
  if (std::fabs(target - gain) < arrived) gain = target;
  gain_.store(gain, std::memory_order_relaxed);
}

}  // namespace quillmere::pipewire
