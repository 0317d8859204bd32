// The variants of the steady kernel that any processor of its kind has, and the choice among all.
#include "io/SteadyGain.h"

#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <arm_neon.h>
#endif

#include "io/WholeVectors.h"

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

namespace {

struct SSE2 {
  using Floats = __m128;
  static constexpr std::size_t lanes = 4;
  static Floats load(const float* from) { return _mm_loadu_ps(from); }
  static void store(float* to, Floats samples) { _mm_storeu_ps(to, samples); }
  static Floats all(float value) { return _mm_set1_ps(value); }
  static Floats times(Floats one, Floats other) { return _mm_mul_ps(one, other); }
  /// maxps gives its second operand where either is NaN.
  static Floats louder(Floats samples, Floats loudest) {
    return _mm_max_ps(_mm_andnot_ps(all(-0.0F), samples), loudest);
  }
  static float loudest(Floats floats) {
    const Floats pairs = _mm_max_ps(floats, _mm_movehl_ps(floats, floats));
    return _mm_cvtss_f32(_mm_max_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
  }
};

SteadyGainKernel fastest() {
  if (hasAVX512()) return steadyGainAVX512;
  return hasAVX2() ? steadyGainAVX2 : steadyGainSSE2;
}

}  // namespace

float steadyGainSSE2(const float* input, float* output, std::size_t count, float gain, float peak) {
  if (count < SSE2::lanes) return steadyGainScalar(input, output, count, gain, peak);
  return wholeVectors<SSE2>(input, output, count, gain, peak);
}

bool hasAVX2() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2") != 0;
}

bool hasAVX512() {
  __builtin_cpu_init();
  return hasAVX2() && __builtin_cpu_supports("avx512f") != 0;
}

const SteadyGainKernel steadyGain = fastest();

#elif defined(__aarch64__)

namespace {

struct NEON {
  using Floats = float32x4_t;
  static constexpr std::size_t lanes = 4;
  static Floats load(const float* from) { return vld1q_f32(from); }
  static void store(float* to, Floats samples) { vst1q_f32(to, samples); }
  static Floats all(float value) { return vdupq_n_f32(value); }
  static Floats times(Floats one, Floats other) { return vmulq_f32(one, other); }
  /// With its sign. Neither of the processor's own maxima will do: one hands on a sample that is no number, the other
  /// does so with a signalling one. A comparison with either is false.
  static Floats louder(Floats samples, Floats loudest) {
    return vbslq_f32(vcagtq_f32(samples, loudest), samples, loudest);
  }
  static float loudest(Floats floats) { return vmaxvq_f32(vabsq_f32(floats)); }
};

}  // namespace

float steadyGainNEON(const float* input, float* output, std::size_t count, float gain, float peak) {
  if (count < NEON::lanes) return steadyGainScalar(input, output, count, gain, peak);
  return wholeVectors<NEON>(input, output, count, gain, peak);
}

const SteadyGainKernel steadyGain = steadyGainNEON;

#else

const SteadyGainKernel steadyGain = steadyGainScalar;

#endif

}  // namespace quillmere::io
