// The IO algorithm: tapped audio to the device with a gliding gain, measured on the way.
// It knows two buffer lists, four shared words and a coefficient, and nothing of any platform.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/AudioTypes.h"
#include "runtime/Threads.h"

namespace quillmere {

/// What the audio thread and the engine's queue share. Relaxed loads and stores: each word means something by itself.
struct IOWords {
  /// The linear gain to move towards, 0 to 1. Written on [engine].
  std::atomic<float> targetGain{1.0F};
  /// The linear gain in use. Written on [engine] before the IO starts, on [audio] from then on.
  std::atomic<float> currentGain{1.0F};
  /// Decaying linear peak of the input before the gain. Written on [audio].
  std::atomic<float> recentInputPeak{0.0F};
  /// How often that peak was written so far, modulo 2^32: where the cycles stop, it says nothing about the moment any
  /// more. Written on [audio].
  std::atomic<std::uint32_t> peaksWritten{0};
};

/// What share of the way to its target the gain moves in one frame: 30 ms time constant; a rate below 8000 Hz counts as
/// 8000. For before the IO starts: to a thread that has just woken it costs as much as the samples. [any]
[[nodiscard]] float glideCoefficient(double sampleRateHz);

/// One IO cycle over the first buffer of each list; returns without writing anything if one is missing or has no data.
/// The gain moves towards the target once a frame, by that coefficient. Output beyond the shorter buffer is left as it
/// is, output channels beyond the second are cleared. Stops the process if there are frames and the output has fewer
/// than two channels. Input and output may be the same memory, but must not overlap otherwise. No allocation, no lock,
/// no system call. [audio]
QUILLMERE_REALTIME void processIO(const AudioBufferList& input, const AudioBufferList& output, float coefficient,
                                  IOWords& words);

}  // namespace quillmere
