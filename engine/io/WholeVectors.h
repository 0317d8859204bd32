// The steady kernel for any vector: what is the same in all its forms.
// Included only where the vector's instructions are allowed, by sources that define the vector in a namespace of their
// own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "runtime/Threads.h"

namespace quillmere::io {

/// As `SteadyGainKernel`, for at least `Vector::lanes` samples. A vector is a type of no size with
/// - `Floats`, that many samples, and `load`, `store` and `all` of them, which want no alignment;
/// - `times`: the products, lane by lane;
/// - `louder`: of each lane what has the larger magnitude, the loudest so far where the sample is NaN. The loudest may
///   keep its sign until the end; it is never NaN, so that the order in which lanes are folded cannot be seen;
/// - `loudest`: the largest magnitude of all lanes.
///
/// The first and the last vector are read before anything is written and written after all others: they overlap their
/// neighbours, and input and output may be the same memory. What lies between is written a whole vector at a time from
/// where one fits: stores that straddle two cache lines cost as much as two. No sample is done by itself. [audio]
template <typename Vector>
QUILLMERE_REALTIME float wholeVectors(const float* input, float* output, std::size_t count, float gain, float peak) {
  constexpr std::size_t lanes = Vector::lanes;
  using Floats = typename Vector::Floats;
  const Floats gains = Vector::all(gain);
  const Floats head = Vector::load(input);
  const Floats tail = Vector::load(input + count - lanes);
  // Four of them: one would make every step wait for the one before.
  Floats loudest0 = Vector::louder(head, Vector::all(peak));
  Floats loudest1 = Vector::louder(tail, Vector::all(peak));
  Floats loudest2 = loudest0;
  Floats loudest3 = loudest1;
  std::size_t i = lanes - reinterpret_cast<std::uintptr_t>(output) / sizeof(float) % lanes;
  for (; i + 4 * lanes <= count; i += 4 * lanes) {
    const Floats first = Vector::load(input + i);
    const Floats second = Vector::load(input + i + lanes);
    const Floats third = Vector::load(input + i + 2 * lanes);
    const Floats fourth = Vector::load(input + i + 3 * lanes);
    loudest0 = Vector::louder(first, loudest0);
    loudest1 = Vector::louder(second, loudest1);
    loudest2 = Vector::louder(third, loudest2);
    loudest3 = Vector::louder(fourth, loudest3);
    Vector::store(output + i, Vector::times(gains, first));
    Vector::store(output + i + lanes, Vector::times(gains, second));
    Vector::store(output + i + 2 * lanes, Vector::times(gains, third));
    Vector::store(output + i + 3 * lanes, Vector::times(gains, fourth));
  }
  for (; i + lanes <= count; i += lanes) {
    const Floats samples = Vector::load(input + i);
    loudest0 = Vector::louder(samples, loudest0);
    Vector::store(output + i, Vector::times(gains, samples));
  }
  Vector::store(output, Vector::times(gains, head));
  Vector::store(output + count - lanes, Vector::times(gains, tail));
  return Vector::loudest(Vector::louder(Vector::louder(loudest0, loudest1), Vector::louder(loudest2, loudest3)));
}

}  // namespace quillmere::io
