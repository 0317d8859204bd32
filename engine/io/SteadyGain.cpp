// The variants of the steady kernel, and the choice among them.
#include "io/SteadyGain.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace quillmere::io {

float steadyGainScalar(const float* input, float* output, std::size_t count, float gain, float peak) {
  for (std::size_t i = 0; i < count; ++i) {
    const float sample = input[i];
    const float magnitude = std::fabs(sample);
    // As a comparison and not std::fmax: what is no number is never the larger one, here and in the vector forms.
    peak = magnitude > peak ? magnitude : peak;
    output[i] = gain * sample;
  }
  return peak;
}

#if defined(__x86_64__)

// maxps gives its second operand where either is NaN, so with the running peak second a NaN sample changes nothing. The
// running peak itself is never NaN, so that the order in which lanes are folded cannot be seen.

float steadyGainSSE2(const float* input, float* output, std::size_t count, float gain, float peak) {
  constexpr std::size_t lanes = 4;
  const __m128 gains = _mm_set1_ps(gain);
  const __m128 signs = _mm_set1_ps(-0.0F);
  __m128 peak0 = _mm_set1_ps(peak);
  __m128 peak1 = peak0;
  std::size_t i = 0;
  for (; i + 2 * lanes <= count; i += 2 * lanes) {
    const __m128 first = _mm_loadu_ps(input + i);
    const __m128 second = _mm_loadu_ps(input + i + lanes);
    peak0 = _mm_max_ps(_mm_andnot_ps(signs, first), peak0);
    peak1 = _mm_max_ps(_mm_andnot_ps(signs, second), peak1);
    _mm_storeu_ps(output + i, _mm_mul_ps(gains, first));
    _mm_storeu_ps(output + i + lanes, _mm_mul_ps(gains, second));
  }
  std::array<float, lanes> lanePeaks{};
  _mm_storeu_ps(lanePeaks.data(), _mm_max_ps(peak0, peak1));
  for (const float lane : lanePeaks) peak = std::max(peak, lane);
  return steadyGainScalar(input + i, output + i, count - i, gain, peak);
}

[[gnu::target("avx2")]] float steadyGainAVX2(const float* input, float* output, std::size_t count, float gain,
                                             float peak) {
  constexpr std::size_t lanes = 8;
  // Stores that straddle two cache lines cost as much as two, so the first whole vector starts where one fits.
  const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(output) / sizeof(float) % lanes;
  const std::size_t head = std::min(count, misaligned == 0 ? 0 : lanes - misaligned);
  peak = steadyGainScalar(input, output, head, gain, peak);
  const __m256 gains = _mm256_set1_ps(gain);
  const __m256 signs = _mm256_set1_ps(-0.0F);
  // Four running peaks: one would make every step wait for the one before.
  __m256 peak0 = _mm256_set1_ps(peak);
  __m256 peak1 = peak0;
  __m256 peak2 = peak0;
  __m256 peak3 = peak0;
  std::size_t i = head;
  for (; i + 4 * lanes <= count; i += 4 * lanes) {
    const __m256 first = _mm256_loadu_ps(input + i);
    const __m256 second = _mm256_loadu_ps(input + i + lanes);
    const __m256 third = _mm256_loadu_ps(input + i + 2 * lanes);
    const __m256 fourth = _mm256_loadu_ps(input + i + 3 * lanes);
    peak0 = _mm256_max_ps(_mm256_andnot_ps(signs, first), peak0);
    peak1 = _mm256_max_ps(_mm256_andnot_ps(signs, second), peak1);
    peak2 = _mm256_max_ps(_mm256_andnot_ps(signs, third), peak2);
    peak3 = _mm256_max_ps(_mm256_andnot_ps(signs, fourth), peak3);
    _mm256_storeu_ps(output + i, _mm256_mul_ps(gains, first));
    _mm256_storeu_ps(output + i + lanes, _mm256_mul_ps(gains, second));
    _mm256_storeu_ps(output + i + 2 * lanes, _mm256_mul_ps(gains, third));
    _mm256_storeu_ps(output + i + 3 * lanes, _mm256_mul_ps(gains, fourth));
  }
  std::array<float, lanes> lanePeaks{};
  _mm256_storeu_ps(lanePeaks.data(), _mm256_max_ps(_mm256_max_ps(peak0, peak1), _mm256_max_ps(peak2, peak3)));
  for (const float lane : lanePeaks) peak = std::max(peak, lane);
  _mm256_zeroupper();
  return steadyGainSSE2(input + i, output + i, count - i, gain, peak);
}

bool hasAVX2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") != 0;
}

const SteadyGainKernel steadyGain = hasAVX2() ? steadyGainAVX2 : steadyGainSSE2;

#else

const SteadyGainKernel steadyGain = steadyGainScalar;

#endif

}  // namespace quillmere::io
