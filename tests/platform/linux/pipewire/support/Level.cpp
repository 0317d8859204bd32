#include "support/Level.h"

#include <algorithm>
#include <cmath>

#include "support/Session.h"

namespace quillmere::test {

::testing::AssertionResult levelIs(const MonitorRecorder& monitor, float gain) {
  float peak = 0.0F;
  const bool reached = eventually([&] {
    peak = monitor.nextPeak();
    return std::fabs(peak - signalLevel * gain) <= 0.0025F * gain + 1e-5F;
  });
  if (reached) return ::testing::AssertionSuccess();
  session::keepGraph();
  return ::testing::AssertionFailure() << "level " << peak << " instead of " << signalLevel * gain;
}

float largestStep(const std::vector<float>& samples) {
  float largest = 0.0F;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    // A cycle that was lost at a handover is silence and another test's matter.
    if (samples[i] == 0.0F || samples[i - 1] == 0.0F) continue;
    largest = std::max(largest, std::fabs(samples[i] - samples[i - 1]));
  }
  return largest;
}

}  // namespace quillmere::test
