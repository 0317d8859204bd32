// The steady kernel for processors with AVX2, compiled for them alone: nothing else may be defined here, since whoever
// links an inline function of it might take it to a processor that lacks them.
#include "io/SteadyGain.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include "io/WholeVectors.h"

namespace quillmere::io {
namespace {

struct AVX2 {
  using Floats = __m256;
  static constexpr std::size_t lanes = 8;
  static Floats load(const float* from) { return _mm256_loadu_ps(from); }
  static void store(float* to, Floats samples) { _mm256_storeu_ps(to, samples); }
  static Floats all(float value) { return _mm256_set1_ps(value); }
  static Floats times(Floats one, Floats other) { return _mm256_mul_ps(one, other); }
  /// vmaxps gives its second operand where either is NaN.
  static Floats louder(Floats samples, Floats loudest) {
    return _mm256_max_ps(_mm256_andnot_ps(all(-0.0F), samples), loudest);
  }
  static float loudest(Floats floats) {
    const __m128 halves = _mm_max_ps(_mm256_castps256_ps128(floats), _mm256_extractf128_ps(floats, 1));
    const __m128 pairs = _mm_max_ps(halves, _mm_movehl_ps(halves, halves));
    return _mm_cvtss_f32(_mm_max_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
  }
};

}  // namespace

float steadyGainAVX2(const float* input, float* output, std::size_t count, float gain, float peak) {
  if (count < AVX2::lanes) return steadyGainSSE2(input, output, count, gain, peak);
  const float loudest = wholeVectors<AVX2>(input, output, count, gain, peak);
  // Not every level of optimization adds it, and without it the program's other arithmetic is slow on some processors.
  _mm256_zeroupper();
  return loudest;
}

}  // namespace quillmere::io

#endif
