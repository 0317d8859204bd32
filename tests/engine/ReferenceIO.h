// The IO algorithm as one would write it down: no fast path, no vectors. What the real one is held against, bit by bit.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "platform/AudioTypes.h"

namespace quillmere {

struct ReferenceIO {
  float targetGain = 1.0F;
  float currentGain = 1.0F;
  float recentInputPeak = 0.0F;

  void run(const AudioBufferList& input, const AudioBufferList& output, double sampleRate) {
    const double rate = sampleRate > 8000.0 ? sampleRate : 8000.0;
    const double alpha = std::exp(-1.0 / (rate * 0.03));
    if (input.buffers.empty() || input.buffers[0].data == nullptr) return;
    if (output.buffers.empty() || output.buffers[0].data == nullptr) return;
    const AudioBuffer& in = input.buffers[0];
    const AudioBuffer& out = output.buffers[0];
    const std::uint32_t inChannels = std::max<std::uint32_t>(in.channelCount, 1);
    const std::uint32_t outChannels = std::max<std::uint32_t>(out.channelCount, 1);
    const std::uint32_t frames = std::min(in.byteCount / (inChannels * 4), out.byteCount / (outChannels * 4));
    float g = currentGain;
    float peak = 0.0F;
    const float t = targetGain;
    const auto c = static_cast<float>(1.0 - alpha);
    for (std::size_t i = 0; i < frames; ++i) {
      const float l = in.data[i * inChannels];
      const float r = in.channelCount >= 2 ? in.data[i * inChannels + 1] : l;
      // Each of the three is rounded by itself: a compiler can't join what must lie in memory in between.
      const volatile float wayToGo = t - g;
      const volatile float step = wayToGo * c;
      g = g + step;
      peak = std::max(peak, std::fabs(l));
      peak = std::max(peak, std::fabs(r));
      out.data[i * outChannels] = g * l;
      out.data[i * outChannels + 1] = g * r;
      for (std::size_t channel = 2; channel < outChannels; ++channel) out.data[i * outChannels + channel] = 0.0F;
    }
    currentGain = g;
    const float decayed = recentInputPeak * std::bit_cast<float>(0x3f666666U);
    recentInputPeak = peak > decayed ? peak : decayed;
  }
};

}  // namespace quillmere
