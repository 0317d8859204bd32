// The steady kernel for processors with AVX-512, compiled for them alone: nothing else may be defined here, since
// whoever links an inline function of it might take it to a processor that lacks them.
#include "io/SteadyGain.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include "io/WholeVectors.h"

namespace quillmere::io {
namespace {

struct AVX512 {
  using Floats = __m512;
  static constexpr std::size_t lanes = 16;
  static Floats load(const float* from) { return _mm512_loadu_ps(from); }
  static void store(float* to, Floats samples) { _mm512_storeu_ps(to, samples); }
  static Floats all(float value) { return _mm512_set1_ps(value); }
  static Floats times(Floats one, Floats other) { return _mm512_mul_ps(one, other); }
  /// vmaxps gives its second operand where either is NaN. With a mask of all lanes, since GCC 12 takes the form without
  /// one for the use of an unset variable.
  static Floats louder(Floats samples, Floats loudest) {
    return _mm512_maskz_max_ps(0xFFFF, _mm512_abs_ps(samples), loudest);
  }
  /// By way of memory: GCC 12 takes its own header's way to the upper half for the use of an unset variable.
  static float loudest(Floats floats) {
    float each[16];  // NOLINT(*-avoid-c-arrays): std::array's members are inline functions
    store(each, floats);
    const __m128 low = _mm_max_ps(_mm_loadu_ps(each), _mm_loadu_ps(each + 4));
    const __m128 high = _mm_max_ps(_mm_loadu_ps(each + 8), _mm_loadu_ps(each + 12));
    const __m128 quarters = _mm_max_ps(low, high);
    const __m128 pairs = _mm_max_ps(quarters, _mm_movehl_ps(quarters, quarters));
    return _mm_cvtss_f32(_mm_max_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
  }
};

}  // namespace

float steadyGainAVX512(const float* input, float* output, std::size_t count, float gain, float peak) {
  if (count < AVX512::lanes) return steadyGainAVX2(input, output, count, gain, peak);
  const float loudest = wholeVectors<AVX512>(input, output, count, gain, peak);
  // Not every level of optimization adds it, and without it the program's other arithmetic is slow on some processors.
  _mm256_zeroupper();
  return loudest;
}

}  // namespace quillmere::io

#endif
