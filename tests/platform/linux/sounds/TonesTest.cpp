// The two sounds as numbers.
#include "platform/linux/sounds/Tones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace quillmere::sounds {
namespace {

float peakOf(const std::vector<float>& samples) {
  return std::accumulate(samples.begin(), samples.end(), 0.0F,
                         [](float peak, float sample) { return std::max(peak, std::abs(sample)); });
}

/// How much of a frequency is in the first tenth of a second.
double strength(const std::vector<float>& samples, double frequencyHz) {
  double real = 0.0;
  double imaginary = 0.0;
  for (std::size_t index = 0; index < sampleRateHz / 10; ++index) {
    const double angle = 2.0 * std::numbers::pi * frequencyHz * static_cast<double>(index) / sampleRateHz;
    real += static_cast<double>(samples[index]) * std::cos(angle);
    imaginary += static_cast<double>(samples[index]) * std::sin(angle);
  }
  return std::hypot(real, imaginary);
}

class Tone : public ::testing::TestWithParam<const char*> {
 protected:
  std::vector<float> samples_ = tone(GetParam());
};

TEST_P(Tone, LastsLessThanASecond) {
  EXPECT_GT(samples_.size(), sampleRateHz / 4);
  EXPECT_LT(samples_.size(), sampleRateHz);
}

TEST_P(Tone, PeaksTwelveDecibelsBelowFullScale) { EXPECT_NEAR(20.0 * std::log10(peakOf(samples_)), -12.0, 0.01); }

TEST_P(Tone, BeginsAndEndsInSilence) {
  EXPECT_EQ(samples_.front(), 0.0F);
  EXPECT_EQ(samples_.back(), 0.0F);
  const auto millisecond = static_cast<std::ptrdiff_t>(sampleRateHz / 1000);
  EXPECT_LT(peakOf({samples_.end() - millisecond, samples_.end()}), 0.0001F) << "nothing clicks at the end";
}

TEST_P(Tone, HasNoStepThatClicks) {
  float step = 0.0F;
  for (std::size_t index = 1; index < samples_.size(); ++index) {
    step = std::max(step, std::abs(samples_[index] - samples_[index - 1]));
  }
  // A full-scale step of these pitches at this level would be far above.
  EXPECT_LT(step, 0.15F);
}

TEST_P(Tone, IsTheSameEveryTime) { EXPECT_EQ(samples_, tone(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Sounds, Tone, ::testing::Values("Glass", "Hero"));

TEST(Tones, GlassAndHeroAreDifferentNotes) {
  const auto glass = tone("Glass");
  const auto hero = tone("Hero");
  EXPECT_GT(strength(glass, 1567.98), 10.0 * strength(hero, 1567.98) / 2.0);
  EXPECT_GT(strength(hero, 523.25), 10.0 * strength(glass, 523.25));
}

TEST(Tones, UnknownNamesAreSilent) {
  EXPECT_TRUE(tone("").empty());
  EXPECT_TRUE(tone("glass").empty());
  EXPECT_TRUE(tone("Basso").empty());
}

}  // namespace
}  // namespace quillmere::sounds
