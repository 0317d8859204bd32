#include "support/CounterTrace.h"

#include <cmath>

namespace quillmere::test {
namespace {

constexpr long period = 16384;

/// 1 to 16384; 0 for silence.
long countOf(float sample) { return std::lround(sample * 32768.0F); }

}  // namespace

std::vector<Break> breaksIn(std::span<const float> recording) {
  std::vector<Break> breaks;
  long previous = 0;
  std::size_t silence = 0;
  for (std::size_t i = 0; i < recording.size(); ++i) {
    const long count = countOf(recording[i]);
    if (count == 0) {
      ++silence;
      continue;
    }
    if (previous != 0) {
      const long expected = previous % period + 1;
      long lost = (count - expected) % period;
      if (lost > period / 2) lost -= period;
      if (lost < -period / 2) lost += period;
      if (lost != 0 || silence != 0) breaks.push_back({i - silence, silence, lost});
    }
    previous = count;
    silence = 0;
  }
  return breaks;
}

}  // namespace quillmere::test
