// The IO block: its arithmetic to the last bit, and everything that buffers can look like.
#include "engine/IOProcessor.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include "ReferenceIO.h"
#include "engine/io/FaintGain.h"
#include "engine/io/SteadyGain.h"

#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

namespace quillmere {
namespace {

constexpr double rate = 48000.0;
constexpr float untouched = 123.0F;

/// Samples with room around them, so that a write outside shows.
class Samples {
 public:
  Samples(std::uint32_t channels, std::size_t frames, float fill, std::size_t offset = 0)
      : storage_(offset + channels * frames + 64, untouched), offset_(offset) {
    buffer_ = {channels, static_cast<std::uint32_t>(channels * frames * sizeof(float)), storage_.data() + offset};
    std::fill_n(buffer_.data, channels * frames, fill);
  }
  Samples(const Samples&) = delete;
  Samples& operator=(const Samples&) = delete;

  float& operator[](std::size_t i) { return buffer_.data[i]; }
  AudioBuffer& buffer() { return buffer_; }
  AudioBufferList list() { return {.buffers = {&buffer_, 1}}; }
  std::size_t count() const { return buffer_.byteCount / sizeof(float); }
  std::vector<std::uint32_t> bits() const {
    std::vector<std::uint32_t> all;
    for (const float value : storage_) all.push_back(std::bit_cast<std::uint32_t>(value));
    return all;
  }

 private:
  std::vector<float> storage_;
  std::size_t offset_;
  AudioBuffer buffer_;
};

std::uint32_t bitsOf(float value) { return std::bit_cast<std::uint32_t>(value); }

/// Whether what is written is the formula's, bit by bit; but where the formula gives a denormal number, the sign is,
/// and there is no more than the least ordinary number.
testing::AssertionResult isHeardAs(const std::vector<std::uint32_t>& formula,
                                   const std::vector<std::uint32_t>& written) {
  if (formula.size() != written.size()) return testing::AssertionFailure() << "another number of samples";
  for (std::size_t i = 0; i < formula.size(); ++i) {
    if (formula[i] == written[i]) continue;
    const bool isDenormal = std::fpclassify(std::bit_cast<float>(formula[i])) == FP_SUBNORMAL;
    const bool sameSign = ((formula[i] ^ written[i]) & 0x80000000U) == 0;
    if (isDenormal && sameSign && (written[i] & 0x7FFFFFFFU) <= 0x00800000U) continue;
    return testing::AssertionFailure() << "at " << i << std::hexfloat << ": " << std::bit_cast<float>(formula[i])
                                       << " by the formula, written " << std::bit_cast<float>(written[i]);
  }
  return testing::AssertionSuccess();
}

struct IOProcessor : testing::Test {
  IOWords words;

  void setGain(float gain) {
    words.targetGain = gain;
    words.currentGain = gain;
  }
  void run(Samples& input, Samples& output, double sampleRate = rate) {
    processIO(input.list(), output.list(), glideCoefficient(sampleRate), words);
  }
};

TEST_F(IOProcessor, AtASteadyGainItIsAPlainMultiply) {
  setGain(0.5F);
  Samples input(2, 100, 0.8F);
  Samples output(2, 100, untouched);
  run(input, output);
  for (std::size_t i = 0; i < output.count(); ++i) EXPECT_EQ(output[i], 0.5F * 0.8F);
  EXPECT_EQ(words.currentGain, 0.5F);
}

TEST_F(IOProcessor, TheGainMovesBeforeItIsUsedSoTheFirstFrameHasOneStepApplied) {
  words.targetGain = 0.0F;
  words.currentGain = 1.0F;
  Samples input(2, 1, 1.0F);
  Samples output(2, 1, untouched);
  run(input, output);
  const auto c = static_cast<float>(1.0 - std::exp(-1.0 / (48000.0 * 0.03)));
  EXPECT_EQ(bitsOf(output[0]), bitsOf(1.0F + (0.0F - 1.0F) * c));
  EXPECT_LT(output[0], 1.0F);
  EXPECT_EQ(words.currentGain, output[0]);
}

TEST_F(IOProcessor, AfterThirtyMillisecondsAStepToZeroHasFallenToAboutAThirdWithoutAnAudibleStep) {
  words.targetGain = 0.0F;
  words.currentGain = 1.0F;
  Samples input(2, 1440, 1.0F);
  Samples output(2, 1440, untouched);
  run(input, output);
  EXPECT_NEAR(words.currentGain.load(), std::exp(-1.0), 1e-4);
  float last = 1.0F;
  for (std::size_t frame = 0; frame < 1440; ++frame) {
    EXPECT_LT(last - output[2 * frame], 0.0008F);
    EXPECT_GT(last, output[2 * frame]);
    last = output[2 * frame];
  }
}

TEST_F(IOProcessor, ATargetChangedBetweenTwoCallbacksIsHeardFromTheSecondOn) {
  setGain(1.0F);
  Samples input(2, 64, 0.25F);
  Samples output(2, 64, untouched);
  run(input, output);
  EXPECT_EQ(output[127], 0.25F);
  words.targetGain = 0.0F;
  run(input, output);
  EXPECT_LT(output[0], 0.25F);
}

TEST_F(IOProcessor, NoFramesRewriteTheGainUnchangedAndLetThePeakDecay) {
  setGain(0.4F);
  words.targetGain = 0.9F;
  words.recentInputPeak = 0.5F;
  Samples input(2, 0, 0.0F);
  Samples output(2, 0, 0.0F);
  const auto before = output.bits();
  run(input, output);
  EXPECT_EQ(output.bits(), before);
  EXPECT_EQ(words.currentGain, 0.4F);
  EXPECT_EQ(words.recentInputPeak, 0.5F * std::bit_cast<float>(0x3f666666U));
}

TEST_F(IOProcessor, NoFramesIntoAMonoOutputAreNoFault) {
  Samples input(2, 0, 0.0F);
  Samples output(1, 0, 0.0F);
  run(input, output);
  EXPECT_EQ(words.recentInputPeak, 0.0F);
}

TEST_F(IOProcessor, AMissingInputBufferLeavesEverythingAsItWas) {
  setGain(0.4F);
  words.recentInputPeak = 0.5F;
  Samples output(2, 8, 0.7F);
  const auto before = output.bits();
  processIO({}, output.list(), glideCoefficient(rate), words);
  AudioBuffer null{2, 64, nullptr};
  processIO({.buffers = {&null, 1}}, output.list(), glideCoefficient(rate), words);
  EXPECT_EQ(output.bits(), before);
  EXPECT_EQ(words.currentGain, 0.4F);
  EXPECT_EQ(words.recentInputPeak, 0.5F);
}

TEST_F(IOProcessor, AMissingOutputBufferLeavesEverythingAsItWas) {
  setGain(0.4F);
  words.recentInputPeak = 0.5F;
  Samples input(2, 8, 1.0F);
  processIO(input.list(), {}, glideCoefficient(rate), words);
  AudioBuffer null{2, 64, nullptr};
  processIO(input.list(), {.buffers = {&null, 1}}, glideCoefficient(rate), words);
  EXPECT_EQ(words.currentGain, 0.4F);
  EXPECT_EQ(words.recentInputPeak, 0.5F);
}

TEST_F(IOProcessor, AMonoInputIsCarriedByBothOutputChannels) {
  setGain(0.5F);
  Samples input(1, 4, 0.0F);
  for (std::size_t i = 0; i < 4; ++i) input[i] = static_cast<float>(i + 1) / 8.0F;
  Samples output(2, 4, untouched);
  run(input, output);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(output[2 * i], 0.5F * input[i]);
    EXPECT_EQ(output[2 * i + 1], 0.5F * input[i]);
  }
  EXPECT_EQ(words.recentInputPeak, 0.5F);
}

TEST_F(IOProcessor, AnInputThatClaimsNoChannelsCountsAsMono) {
  setGain(1.0F);
  Samples input(1, 4, 0.25F);
  input.buffer().channelCount = 0;
  Samples output(2, 4, untouched);
  run(input, output);
  EXPECT_EQ(output[7], 0.25F);
}

TEST_F(IOProcessor, OutputChannelsBeyondTheSecondAreSilent) {
  setGain(0.5F);
  Samples input(2, 8, 1.0F);
  Samples output(4, 8, untouched);
  run(input, output);
  for (std::size_t frame = 0; frame < 8; ++frame) {
    EXPECT_EQ(output[4 * frame], 0.5F);
    EXPECT_EQ(output[4 * frame + 1], 0.5F);
    EXPECT_EQ(output[4 * frame + 2], 0.0F);
    EXPECT_EQ(output[4 * frame + 3], 0.0F);
  }
}

TEST_F(IOProcessor, InputChannelsBeyondTheSecondAreIgnored) {
  setGain(1.0F);
  Samples input(3, 2, 0.0F);
  for (std::size_t i = 0; i < 6; ++i) input[i] = static_cast<float>(i);
  Samples output(2, 2, untouched);
  run(input, output);
  EXPECT_EQ(output[0], 0.0F);
  EXPECT_EQ(output[1], 1.0F);
  EXPECT_EQ(output[2], 3.0F);
  EXPECT_EQ(output[3], 4.0F);
  EXPECT_EQ(words.recentInputPeak, 4.0F);
}

TEST_F(IOProcessor, WithALongerOutputTheRemainderKeepsWhatWasInIt) {
  setGain(0.5F);
  Samples input(2, 3, 1.0F);
  Samples output(2, 5, 0.7F);
  run(input, output);
  EXPECT_EQ(output[5], 0.5F);
  for (std::size_t i = 6; i < 10; ++i) EXPECT_EQ(output[i], 0.7F);
}

TEST_F(IOProcessor, WithALongerInputTheOutputDecides) {
  setGain(0.5F);
  Samples input(2, 5, 1.0F);
  input[9] = 3.0F;
  Samples output(2, 3, 0.7F);
  run(input, output);
  EXPECT_EQ(output[5], 0.5F);
  EXPECT_EQ(output[6], untouched);
  EXPECT_EQ(words.recentInputPeak, 1.0F);
}

TEST_F(IOProcessor, AnIncompleteLastFrameIsNotTouched) {
  setGain(1.0F);
  Samples input(2, 4, 0.5F);
  Samples output(2, 4, 0.7F);
  input.buffer().byteCount -= 2;
  run(input, output);
  EXPECT_EQ(output[5], 0.5F);
  EXPECT_EQ(output[6], 0.7F);
}

TEST_F(IOProcessor, OnlyTheFirstBufferOfEachListIsLookedAt) {
  setGain(1.0F);
  Samples first(2, 4, 0.5F);
  Samples second(2, 4, 0.9F);
  Samples output(2, 4, 0.0F);
  Samples other(2, 4, 0.7F);
  AudioBuffer inputs[] = {first.buffer(), second.buffer()};
  AudioBuffer outputs[] = {output.buffer(), other.buffer()};
  processIO({.buffers = inputs}, {.buffers = outputs}, glideCoefficient(rate), words);
  EXPECT_EQ(output[0], 0.5F);
  EXPECT_EQ(other[0], 0.7F);
  EXPECT_EQ(words.recentInputPeak, 0.5F);
}

TEST_F(IOProcessor, ARateOfZeroCountsAsEightThousandHertz) {
  for (const double odd : {0.0, -44100.0, 4000.0, std::numeric_limits<double>::quiet_NaN()}) {
    words.targetGain = 0.0F;
    words.currentGain = 1.0F;
    Samples input(2, 1, 1.0F);
    Samples output(2, 1, untouched);
    run(input, output, odd);
    const auto c = static_cast<float>(1.0 - std::exp(-1.0 / 240.0));
    EXPECT_EQ(bitsOf(output[0]), bitsOf(1.0F + (0.0F - 1.0F) * c)) << odd;
  }
}

TEST_F(IOProcessor, ThePeakIsOfTheInputBeforeTheGain) {
  setGain(0.0F);
  Samples input(2, 16, 0.1F);
  input[5] = -0.9F;
  Samples output(2, 16, untouched);
  run(input, output);
  EXPECT_EQ(output[5], -0.0F);
  EXPECT_EQ(words.recentInputPeak, 0.9F);
}

TEST_F(IOProcessor, ThePeakDecaysByATenthACallbackWhateverItsLength) {
  setGain(1.0F);
  words.recentInputPeak = 1.0F;
  Samples input(2, 512, 0.0F);
  Samples output(2, 512, 0.0F);
  run(input, output);
  EXPECT_EQ(words.recentInputPeak, std::bit_cast<float>(0x3f666666U));
  Samples shortInput(2, 1, 0.0F);
  run(shortInput, output);
  EXPECT_EQ(words.recentInputPeak, std::bit_cast<float>(0x3f666666U) * std::bit_cast<float>(0x3f666666U));
}

TEST_F(IOProcessor, ALouderInputReplacesTheDecayedPeakAtOnce) {
  setGain(1.0F);
  words.recentInputPeak = 0.5F;
  Samples input(2, 8, 0.46F);
  Samples output(2, 8, 0.0F);
  run(input, output);
  EXPECT_EQ(words.recentInputPeak, 0.46F);
}

TEST_F(IOProcessor, SamplesThatAreNoNumberPassAndDoNotCountForThePeak) {
  setGain(0.5F);
  Samples input(2, 40, 0.25F);
  input[3] = std::numeric_limits<float>::quiet_NaN();
  input[78] = std::numeric_limits<float>::quiet_NaN();
  Samples output(2, 40, untouched);
  run(input, output);
  EXPECT_TRUE(std::isnan(output[3]));
  EXPECT_TRUE(std::isnan(output[78]));
  EXPECT_EQ(output[4], 0.125F);
  EXPECT_EQ(words.recentInputPeak, 0.25F);
  EXPECT_EQ(words.currentGain, 0.5F);
}

TEST_F(IOProcessor, ReadingAndWritingTheSameMemoryGivesTheSameResult) {
  setGain(0.5F);
  words.targetGain = 0.51F;
  Samples input(2, 777, 0.3F, 1);
  Samples output(2, 777, 0.0F, 1);
  run(input, output);
  IOWords again;
  again.currentGain = 0.5F;
  again.targetGain = 0.51F;
  processIO(input.list(), input.list(), glideCoefficient(rate), again);
  EXPECT_EQ(input.bits(), output.bits());
}

using IOProcessorDeathTest = IOProcessor;

TEST_F(IOProcessorDeathTest, AMonoOutputWithFramesStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Samples input(2, 4, 1.0F);
  Samples output(1, 4, 0.0F);
  EXPECT_DEATH(run(input, output), "fewer than two channels");
  output.buffer().channelCount = 0;
  EXPECT_DEATH(run(input, output), "fewer than two channels");
}

// Random buffers of every shape against the formula written down plainly.

float oddSample(std::mt19937& random) {
  switch (random() % 16) {
    case 0:
      return std::numeric_limits<float>::infinity() * (random() % 2 == 0 ? 1.0F : -1.0F);
    case 1:
      // Any of them: either sign, quiet and signalling ones, whatever they carry.
      return std::bit_cast<float>(static_cast<std::uint32_t>(random()) | 0x7F800001U);
    case 2:
      return std::numeric_limits<float>::denorm_min() * static_cast<float>(random() % 1000);
    case 3:
      return -0.0F;
    case 4:
      return std::numeric_limits<float>::max();
    default:
      return std::uniform_real_distribution<float>(-1.5F, 1.5F)(random);
  }
}

TEST_F(IOProcessor, RandomBuffersGiveTheBitsOfThePlainFormula) {
  const char* given = std::getenv("QUILLMERE_SEED");
  const auto seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device{}();
  SCOPED_TRACE(testing::Message() << "QUILLMERE_SEED=" << seed << " replays this");
  std::mt19937 random(seed);
  constexpr double rates[] = {0.0, 8000.0, 44100.0, 48000.0, 96000.0, 192000.0};
  constexpr float gains[] = {0.0F, 1.0F, 0.5F, 0.3F, 1e-18F, 1e-30F, 1e-38F, 1e-42F, -0.0F, 0.9999999F};
  for (int round = 0; round < 3000; ++round) {
    const bool usual = random() % 2 == 0;
    const std::uint32_t inChannels = usual ? 2 : 1 + random() % 4;
    const std::uint32_t outChannels = usual ? 2 : 2 + random() % 4;
    const std::size_t inFrames = random() % 300;
    const std::size_t outFrames = random() % 300;
    Samples input(inChannels, inFrames, 0.0F, random() % 9);
    const bool odd = random() % 2 == 0;
    for (std::size_t i = 0; i < input.count(); ++i) {
      input[i] = odd ? oddSample(random) : std::uniform_real_distribution<float>(-1.0F, 1.0F)(random);
    }
    const std::size_t outOffset = random() % 9;
    Samples output(outChannels, outFrames, 0.5F, outOffset);
    Samples expected(outChannels, outFrames, 0.5F, outOffset);
    ReferenceIO reference;
    reference.targetGain = gains[random() % std::size(gains)];
    reference.currentGain = random() % 3 == 0 ? reference.targetGain : gains[random() % std::size(gains)];
    reference.recentInputPeak = random() % 2 == 0 ? 0.0F : 0.7F;
    words.targetGain = reference.targetGain;
    words.currentGain = reference.currentGain;
    words.recentInputPeak = reference.recentInputPeak;
    const double sampleRate = rates[random() % std::size(rates)];
    // Several callbacks, so that a glide comes to rest within a buffer now and then.
    for (int callback = 0; callback < 3; ++callback) {
      run(input, output, sampleRate);
      reference.run(input.list(), expected.list(), sampleRate);
    }
    ASSERT_TRUE(isHeardAs(expected.bits(), output.bits())) << "round " << round;
    ASSERT_EQ(bitsOf(words.currentGain), bitsOf(reference.currentGain)) << "round " << round;
    ASSERT_EQ(bitsOf(words.recentInputPeak), bitsOf(reference.recentInputPeak)) << "round " << round;
  }
}

TEST_F(IOProcessor, AWholeGlideUntilItRestsGivesTheBitsOfThePlainFormula) {
  for (const auto& [from, to] : {std::pair{1.0F, 0.0F}, {0.0F, 1.0F}, {0.2F, 0.7F}, {0.7F, 0.2F}, {1.0F, 0.996F}}) {
    ReferenceIO reference{.targetGain = to, .currentGain = from};
    words.targetGain = to;
    words.currentGain = from;
    Samples input(2, 1021, 0.37F);
    Samples output(2, 1021, 0.0F);
    Samples expected(2, 1021, 0.0F);
    for (int callback = 0; callback < 250; ++callback) {
      run(input, output, rate);
      reference.run(input.list(), expected.list(), rate);
      ASSERT_TRUE(isHeardAs(expected.bits(), output.bits())) << from << " to " << to << ", callback " << callback;
      ASSERT_EQ(bitsOf(words.currentGain), bitsOf(reference.currentGain)) << from << " to " << to;
    }
    EXPECT_EQ(bitsOf(words.currentGain), bitsOf(reference.currentGain));
    EXPECT_NEAR(words.currentGain.load(), to, 1e-4);
  }
}

// Gains next to nothing.

/// Any of them that is positive.
float anyFaintGain(std::mt19937& random) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(1 + random() % (bitsOf(0x1p-64F) - 1)));
}

TEST(FaintGain, IsBelowTwoToTheMinusSixtyFourAndNotZero) {
  for (const float faint : {0x0.ffffffp-64F, 1e-38F, 1e-42F, std::numeric_limits<float>::denorm_min(), -1e-30F}) {
    EXPECT_TRUE(io::isFaint(faint)) << faint;
  }
  for (const float other : {0.0F, -0.0F, 0x1p-64F, 1e-10F, 1.0F, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_FALSE(io::isFaint(other)) << other;
  }
}

TEST(FaintGain, TheGlideToSilenceTakesTheFormulasStepsToTheLastBitUntilItRests) {
  std::mt19937 random(11);
  const float silence[2] = {};
  float output[2] = {};
  for (const double sampleRate : {8000.0, 11025.0, 44100.0, 48000.0, 96000.0, 192000.0, 768000.0}) {
    const float coefficient = glideCoefficient(sampleRate);
    for (int round = 0; round < 8; ++round) {
      // Any faint positive gain, the first of all at the edge of the range.
      float formula = round == 0 ? 0x0.ffffffp-64F : anyFaintGain(random);
      float gain = formula;
      bool rests = false;
      while (!rests) {
        const float next = formula + (0.0F - formula) * coefficient;
        const auto fade = io::fadeFaint(silence, output, 1, gain, coefficient, 0.0F);
        rests = bitsOf(next) == bitsOf(formula);
        ASSERT_EQ(fade.frames, rests ? 0U : 1U) << sampleRate << " after " << std::hexfloat << formula;
        ASSERT_EQ(bitsOf(fade.gain), bitsOf(next)) << sampleRate << " after " << std::hexfloat << formula;
        formula = next;
        gain = fade.gain;
      }
      EXPECT_GT(gain, 0.0F) << "a glide ends above nothing";
    }
  }
}

TEST(FaintGain, WhatIsNotDenormalByTheFormulaHasItsBitsWhateverTheSamples) {
  std::mt19937 random(12);
  for (int round = 0; round < 4000; ++round) {
    const float gain = anyFaintGain(random) * (random() % 8 == 0 ? -1.0F : 1.0F);
    constexpr std::size_t count = 64;
    std::vector<float> input(count);
    // Any bits there are; and by turns samples whose products lie close to the least ordinary number.
    for (auto& sample : input) {
      sample = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
      if (round % 2 == 0)
        sample = static_cast<float>(0x1p-126 / gain * (1.0 + (static_cast<double>(random() % 64) - 32.0) * 0x1p-24));
    }
    std::vector<std::uint32_t> formula;
    for (const float sample : input) formula.push_back(bitsOf(gain * sample));
    std::vector<float> output(count, untouched);
    const float peak = io::steadyFaintGain(input.data(), output.data(), count, gain, 0.25F);
    std::vector<float> expected(count);
    EXPECT_EQ(bitsOf(peak), bitsOf(io::steadyGainScalar(input.data(), expected.data(), count, gain, 0.25F)));
    auto same = input;
    EXPECT_EQ(bitsOf(io::steadyFaintGain(same.data(), same.data(), count, gain, 0.25F)), bitsOf(peak));
    std::vector<std::uint32_t> written;
    std::vector<std::uint32_t> writtenInPlace;
    for (std::size_t i = 0; i < count; ++i) written.push_back(bitsOf(output[i]));
    for (std::size_t i = 0; i < count; ++i) writtenInPlace.push_back(bitsOf(same[i]));
    ASSERT_TRUE(isHeardAs(formula, written)) << std::hexfloat << gain;
    ASSERT_TRUE(isHeardAs(formula, writtenInPlace)) << std::hexfloat << gain;
  }
}

#if defined(__x86_64__) || defined(__aarch64__)
/// The processor notes every operation that took a denormal number, and every one that would have given one.
class DenormalNotes {
 public:
  static constexpr bool hasTaken(unsigned notes) { return (notes & taken) != 0; }
  static constexpr bool hasGiven(unsigned notes) { return (notes & given) != 0; }

#if defined(__x86_64__)
  DenormalNotes() { _mm_setcsr(_mm_getcsr() & ~(taken | given)); }
  unsigned notes() const { return _mm_getcsr() & (taken | given); }

 private:
  static constexpr unsigned taken = 0x0002;
  static constexpr unsigned given = 0x0010;
#else
  // This one notes what it takes only while it takes denormal numbers for zero.
  DenormalNotes() {
    asm volatile("mrs %0, fpcr" : "=r"(mode_));
    asm volatile("msr fpcr, %0" : : "r"(mode_ | denormalIsZero) : "memory");
    asm volatile("msr fpsr, %0" : : "r"(std::uint64_t{0}) : "memory");
  }
  ~DenormalNotes() { asm volatile("msr fpcr, %0" : : "r"(mode_) : "memory"); }
  DenormalNotes(const DenormalNotes&) = delete;
  DenormalNotes& operator=(const DenormalNotes&) = delete;
  unsigned notes() const {
    std::uint64_t status = 0;
    asm volatile("mrs %0, fpsr" : "=r"(status) : : "memory");
    return static_cast<unsigned>(status) & (taken | given);
  }

 private:
  static constexpr std::uint64_t denormalIsZero = std::uint64_t{1} << 24U;
  static constexpr unsigned taken = 0x0080;
  static constexpr unsigned given = 0x0008;
  std::uint64_t mode_ = 0;
#endif
};

TEST_F(IOProcessor, OnTheWholeWayToSilenceAndThereNoOperationMeetsADenormalNumber) {
  Samples input(2, 1024, 0.0F);
  std::mt19937 random(13);
  for (std::size_t i = 0; i < input.count(); ++i) input[i] = std::uniform_real_distribution<float>(-1.0F, 1.0F)(random);
  Samples output(2, 1024, 0.0F);
  words.currentGain = 1.0F;
  words.targetGain = 0.0F;
  for (int callback = 0; callback < 250; ++callback) {
    const DenormalNotes watch;
    run(input, output);
    ASSERT_EQ(watch.notes(), 0U) << "callback " << callback;
  }
  const float rest = words.currentGain;
  EXPECT_EQ(std::fpclassify(rest), FP_SUBNORMAL) << "or nothing has been seen here";
}

TEST_F(IOProcessor, TheProcessorTellsOfTheDenormalNumbersThatTheFormulaMeetsAsOneWouldWriteItDown) {
  Samples input(2, 8, 0.3F);
  Samples output(2, 8, 0.0F);
  {
    ReferenceIO reference{.targetGain = 0.0F, .currentGain = 1e-42F};
    const DenormalNotes watch;
    reference.run(input.list(), output.list(), rate);
    EXPECT_TRUE(DenormalNotes::hasTaken(watch.notes()));
  }
  ReferenceIO reference{.targetGain = 0.0F, .currentGain = 0x1.1p-126F};
  const DenormalNotes watch;
  reference.run(input.list(), output.list(), rate);
  EXPECT_TRUE(DenormalNotes::hasGiven(watch.notes()));
}
#endif

TEST_F(IOProcessor, ARaisedGainGlidesFromWhereTheMutedOneRestsAsTheFormulaDoes) {
  ReferenceIO reference{.targetGain = 0.0F, .currentGain = 1.0F};
  words.targetGain = 0.0F;
  words.currentGain = 1.0F;
  Samples input(2, 1024, 0.6F);
  Samples output(2, 1024, 0.0F);
  Samples expected(2, 1024, 0.0F);
  for (const float target : {0.0F, 0.8F, 0.0F, 1e-40F, 1.0F}) {
    words.targetGain = target;
    reference.targetGain = target;
    for (int callback = 0; callback < 200; ++callback) {
      run(input, output);
      reference.run(input.list(), expected.list(), rate);
      ASSERT_TRUE(isHeardAs(expected.bits(), output.bits())) << "to " << target;
      ASSERT_EQ(bitsOf(words.currentGain), bitsOf(reference.currentGain)) << "to " << target;
    }
  }
}

// The kernels among each other.

struct NamedKernel {
  const char* name;
  io::SteadyGainKernel kernel;
};

std::vector<NamedKernel> kernels() {
  std::vector<NamedKernel> all{{"chosen", io::steadyGain}};
#if defined(__x86_64__)
  all.push_back({"SSE2", io::steadyGainSSE2});
  if (io::hasAVX2()) all.push_back({"AVX2", io::steadyGainAVX2});
  if (io::hasAVX512()) all.push_back({"AVX-512", io::steadyGainAVX512});
#elif defined(__aarch64__)
  all.push_back({"NEON", io::steadyGainNEON});
#endif
  return all;
}

TEST(SteadyGain, TheChosenVariantIsAVectorOneWhereThereIsOne) {
  EXPECT_EQ(io::steadyGain != io::steadyGainScalar, kernels().size() > 1);
}

TEST(SteadyGain, EveryVariantGivesTheBitsOfTheScalarOneAtEveryLengthAndAlignment) {
  constexpr float gains[] = {0.3F, 1.0F, 0.0F, -0.0F, 0x1p-100F, 1e-40F, -0.7F};
  std::mt19937 random(7);
  for (const auto& [name, kernel] : kernels()) {
    for (std::size_t count = 0; count < 200; ++count) {
      for (std::size_t offset = 0; offset < 17; ++offset) {
        std::vector<float> input(count + 16);
        for (auto& sample : input) sample = oddSample(random);
        std::vector<float> output(count + 32, untouched);
        std::vector<float> expected(count + 32, untouched);
        const float gain = gains[random() % std::size(gains)];
        const float peak = kernel(input.data() + offset / 2, output.data() + offset, count, gain, 0.1F);
        const float expectedPeak =
            io::steadyGainScalar(input.data() + offset / 2, expected.data() + offset, count, gain, 0.1F);
        ASSERT_EQ(bitsOf(peak), bitsOf(expectedPeak)) << name << " " << count << " " << offset;
        for (std::size_t i = 0; i < output.size(); ++i) {
          ASSERT_EQ(bitsOf(output[i]), bitsOf(expected[i])) << name << " " << count << " " << offset << " at " << i;
        }
        // The same memory, from the same place within a vector.
        std::copy_n(input.data() + offset / 2, count, output.data() + offset);
        ASSERT_EQ(bitsOf(kernel(output.data() + offset, output.data() + offset, count, gain, 0.1F)), bitsOf(peak));
        for (std::size_t i = 0; i < output.size(); ++i) {
          ASSERT_EQ(bitsOf(output[i]), bitsOf(expected[i]))
              << name << " in place " << count << " " << offset << " " << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace quillmere
