// The variants of the steady kernel, and the choice among them.
#include "io/SteadyGain.h"

#include <array>
#include <cmath>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
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

// All forms but SSE2's read the first and the last vector before anything is written and write them after all others:
// they overlap their neighbours, and input and output may be the same memory. What lies between is written a whole
// vector at a time from where one fits: stores that straddle two cache lines cost as much as two. No sample is done by
// itself.

#if defined(__x86_64__)

// maxps gives its second operand where either is NaN, so with the running peak second a NaN sample changes nothing. The
// running peak itself is never NaN, so that the order in which lanes are folded cannot be seen.

namespace {

float largestLane(__m128 lanes) {
  const __m128 pairs = _mm_max_ps(lanes, _mm_movehl_ps(lanes, lanes));
  return _mm_cvtss_f32(_mm_max_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}

}  // namespace

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
  peak = largestLane(_mm_max_ps(peak0, peak1));
  return steadyGainScalar(input + i, output + i, count - i, gain, peak);
}

[[gnu::target("avx2")]] float steadyGainAVX2(const float* input, float* output, std::size_t count, float gain,
                                             float peak) {
  constexpr std::size_t lanes = 8;
  if (count < lanes) return steadyGainSSE2(input, output, count, gain, peak);
  const __m256 gains = _mm256_set1_ps(gain);
  const __m256 signs = _mm256_set1_ps(-0.0F);
  const __m256 head = _mm256_loadu_ps(input);
  const __m256 tail = _mm256_loadu_ps(input + count - lanes);
  // Four running peaks: one would make every step wait for the one before.
  __m256 peak0 = _mm256_max_ps(_mm256_andnot_ps(signs, head), _mm256_set1_ps(peak));
  __m256 peak1 = _mm256_max_ps(_mm256_andnot_ps(signs, tail), _mm256_set1_ps(peak));
  __m256 peak2 = peak0;
  __m256 peak3 = peak1;
  std::size_t i = lanes - reinterpret_cast<std::uintptr_t>(output) / sizeof(float) % lanes;
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
  for (; i + lanes <= count; i += lanes) {
    const __m256 samples = _mm256_loadu_ps(input + i);
    peak0 = _mm256_max_ps(_mm256_andnot_ps(signs, samples), peak0);
    _mm256_storeu_ps(output + i, _mm256_mul_ps(gains, samples));
  }
  _mm256_storeu_ps(output, _mm256_mul_ps(gains, head));
  _mm256_storeu_ps(output + count - lanes, _mm256_mul_ps(gains, tail));
  const __m256 peaks = _mm256_max_ps(_mm256_max_ps(peak0, peak1), _mm256_max_ps(peak2, peak3));
  peak = largestLane(_mm_max_ps(_mm256_castps256_ps128(peaks), _mm256_extractf128_ps(peaks, 1)));
  _mm256_zeroupper();
  return peak;
}

namespace {

/// With a mask of all lanes, since GCC 12 takes the form without one for the use of an unset variable.
[[gnu::target("avx512f")]] __m512 largerMagnitude(__m512 samples, __m512 peaks) {
  return _mm512_maskz_max_ps(0xFFFF, _mm512_abs_ps(samples), peaks);
}

}  // namespace

[[gnu::target("avx512f")]] float steadyGainAVX512(const float* input, float* output, std::size_t count, float gain,
                                                  float peak) {
  constexpr std::size_t lanes = 16;
  if (count < lanes) return steadyGainAVX2(input, output, count, gain, peak);
  const __m512 gains = _mm512_set1_ps(gain);
  const __m512 head = _mm512_loadu_ps(input);
  const __m512 tail = _mm512_loadu_ps(input + count - lanes);
  __m512 peak0 = largerMagnitude(head, _mm512_set1_ps(peak));
  __m512 peak1 = largerMagnitude(tail, _mm512_set1_ps(peak));
  __m512 peak2 = peak0;
  __m512 peak3 = peak1;
  std::size_t i = lanes - reinterpret_cast<std::uintptr_t>(output) / sizeof(float) % lanes;
  for (; i + 4 * lanes <= count; i += 4 * lanes) {
    const __m512 first = _mm512_loadu_ps(input + i);
    const __m512 second = _mm512_loadu_ps(input + i + lanes);
    const __m512 third = _mm512_loadu_ps(input + i + 2 * lanes);
    const __m512 fourth = _mm512_loadu_ps(input + i + 3 * lanes);
    peak0 = largerMagnitude(first, peak0);
    peak1 = largerMagnitude(second, peak1);
    peak2 = largerMagnitude(third, peak2);
    peak3 = largerMagnitude(fourth, peak3);
    _mm512_storeu_ps(output + i, _mm512_mul_ps(gains, first));
    _mm512_storeu_ps(output + i + lanes, _mm512_mul_ps(gains, second));
    _mm512_storeu_ps(output + i + 2 * lanes, _mm512_mul_ps(gains, third));
    _mm512_storeu_ps(output + i + 3 * lanes, _mm512_mul_ps(gains, fourth));
  }
  for (; i + lanes <= count; i += lanes) {
    const __m512 samples = _mm512_loadu_ps(input + i);
    peak0 = largerMagnitude(samples, peak0);
    _mm512_storeu_ps(output + i, _mm512_mul_ps(gains, samples));
  }
  _mm512_storeu_ps(output, _mm512_mul_ps(gains, head));
  _mm512_storeu_ps(output + count - lanes, _mm512_mul_ps(gains, tail));
  // None of the peaks is negative.
  const __m512 peaks = largerMagnitude(largerMagnitude(peak0, peak1), largerMagnitude(peak2, peak3));
  // By way of memory: GCC 12 takes its own header's way to the upper half for the use of an unset variable.
  std::array<float, lanes> lanePeaks{};
  _mm512_storeu_ps(lanePeaks.data(), peaks);
  const __m128 low = _mm_max_ps(_mm_loadu_ps(lanePeaks.data()), _mm_loadu_ps(&lanePeaks[4]));
  const __m128 high = _mm_max_ps(_mm_loadu_ps(&lanePeaks[8]), _mm_loadu_ps(&lanePeaks[12]));
  peak = largestLane(_mm_max_ps(low, high));
  _mm256_zeroupper();
  return peak;
}

bool hasAVX2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") != 0;
}

bool hasAVX512() {
  __builtin_cpu_init();
  return hasAVX2() && __builtin_cpu_supports("avx512f") != 0;
}

namespace {

SteadyGainKernel fastest() {
  if (hasAVX512()) return steadyGainAVX512;
  return hasAVX2() ? steadyGainAVX2 : steadyGainSSE2;
}

}  // namespace

const SteadyGainKernel steadyGain = fastest();

#elif defined(__aarch64__)

namespace {

/// Of each lane what is larger without its sign. Neither of the processor's own maxima will do: one hands on a sample
/// that is no number, the other does so with a signalling one. A comparison with either is false.
float32x4_t louder(float32x4_t samples, float32x4_t loudest) {
  return vbslq_f32(vcagtq_f32(samples, loudest), samples, loudest);
}

}  // namespace

float steadyGainNEON(const float* input, float* output, std::size_t count, float gain, float peak) {
  constexpr std::size_t lanes = 4;
  if (count < lanes) return steadyGainScalar(input, output, count, gain, peak);
  const float32x4_t gains = vdupq_n_f32(gain);
  const float32x4_t head = vld1q_f32(input);
  const float32x4_t tail = vld1q_f32(input + count - lanes);
  // Four of them: one would make every step wait for the one before. They keep their signs until the end.
  float32x4_t loudest0 = louder(head, vdupq_n_f32(peak));
  float32x4_t loudest1 = louder(tail, vdupq_n_f32(peak));
  float32x4_t loudest2 = loudest0;
  float32x4_t loudest3 = loudest1;
  std::size_t i = lanes - reinterpret_cast<std::uintptr_t>(output) / sizeof(float) % lanes;
  for (; i + 4 * lanes <= count; i += 4 * lanes) {
    const float32x4_t first = vld1q_f32(input + i);
    const float32x4_t second = vld1q_f32(input + i + lanes);
    const float32x4_t third = vld1q_f32(input + i + 2 * lanes);
    const float32x4_t fourth = vld1q_f32(input + i + 3 * lanes);
    loudest0 = louder(first, loudest0);
    loudest1 = louder(second, loudest1);
    loudest2 = louder(third, loudest2);
    loudest3 = louder(fourth, loudest3);
    vst1q_f32(output + i, vmulq_f32(gains, first));
    vst1q_f32(output + i + lanes, vmulq_f32(gains, second));
    vst1q_f32(output + i + 2 * lanes, vmulq_f32(gains, third));
    vst1q_f32(output + i + 3 * lanes, vmulq_f32(gains, fourth));
  }
  for (; i + lanes <= count; i += lanes) {
    const float32x4_t samples = vld1q_f32(input + i);
    loudest0 = louder(samples, loudest0);
    vst1q_f32(output + i, vmulq_f32(gains, samples));
  }
  vst1q_f32(output, vmulq_f32(gains, head));
  vst1q_f32(output + count - lanes, vmulq_f32(gains, tail));
  // None of them is NaN.
  return vmaxvq_f32(vabsq_f32(louder(louder(loudest0, loudest1), louder(loudest2, loudest3))));
}

const SteadyGainKernel steadyGain = steadyGainNEON;

#else

const SteadyGainKernel steadyGain = steadyGainScalar;

#endif

}  // namespace quillmere::io
