// The multiply-and-measure kernel for a gain that no longer moves: one pass over interleaved stereo samples.
// Every variant gives the same bits; the fastest one this processor has is chosen when the program is loaded.
#pragma once

#include <cstddef>

#include "runtime/Threads.h"

namespace quillmere::io {

/// Writes `gain` times each of `count` samples and returns the largest of `peak`, which isn't negative, and their
/// magnitudes; NaN samples do not count for it. Input and output may be the same memory, but must not overlap
/// otherwise. [audio]
using SteadyGainKernel = float (*)(const float* input, float* output, std::size_t count, float gain, float peak);

QUILLMERE_REALTIME float steadyGainScalar(const float* input, float* output, std::size_t count, float gain, float peak);

#if defined(__x86_64__)
QUILLMERE_REALTIME float steadyGainSSE2(const float* input, float* output, std::size_t count, float gain, float peak);
/// Only where the processor has it.
QUILLMERE_REALTIME float steadyGainAVX2(const float* input, float* output, std::size_t count, float gain, float peak);
QUILLMERE_REALTIME float steadyGainAVX512(const float* input, float* output, std::size_t count, float gain, float peak);
/// Whether the processor has it and the system keeps its registers.
[[nodiscard]] bool hasAVX2();
[[nodiscard]] bool hasAVX512();
#elif defined(__aarch64__)
/// Every such processor has it.
QUILLMERE_REALTIME float steadyGainNEON(const float* input, float* output, std::size_t count, float gain, float peak);
#endif

/// The variant for this processor; never null.
extern const SteadyGainKernel steadyGain;

}  // namespace quillmere::io
