// The program's own two sounds through a real daemon, measured at the device.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

#include "platform/linux/TonePlayer.h"
#include "platform/linux/sounds/Tones.h"
#include "runtime/LoopExecutor.h"
#include "runtime/ThreadPoolExecutor.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

double decibels(float amplitude) { return 20.0 * std::log10(static_cast<double>(amplitude) + 1e-10); }

float peakOf(std::span<const float> samples) {
  float peak = 0.0F;
  for (const float sample : samples) peak = std::max(peak, std::abs(sample));
  return peak;
}

/// Amplitude of a frequency in these samples.
double strength(std::span<const float> samples, double frequencyHz) {
  double real = 0.0;
  double imaginary = 0.0;
  for (std::size_t index = 0; index < samples.size(); ++index) {
    const double angle = 2.0 * std::numbers::pi * frequencyHz * static_cast<double>(index) / sounds::sampleRateHz;
    real += static_cast<double>(samples[index]) * std::cos(angle);
    imaginary += static_cast<double>(samples[index]) * std::sin(angle);
  }
  return 2.0 * std::hypot(real, imaginary) / static_cast<double>(samples.size());
}

/// From the first sample that is heard to the last.
std::vector<float> audiblePart(const std::vector<float>& samples) {
  const auto isHeard = [](float sample) { return std::abs(sample) > 1e-4F; };
  const auto first = std::ranges::find_if(samples, isHeard);
  const auto last = std::find_if(samples.rbegin(), samples.rend(), isHeard).base();
  return first < last ? std::vector<float>(first, last) : std::vector<float>();
}

class Sounds : public SessionTest {
 protected:
  /// Plays it, waits for its end, and gives what was heard at `device` meanwhile.
  std::vector<float> heardAt(const MonitorRecorder& recorder, const std::string& name) {
    EXPECT_TRUE(eventually([&] { return recorder.size() > 0; })) << "the recording runs";
    const auto first = recorder.size();
    EXPECT_TRUE(player.play(name));
    EXPECT_TRUE(eventually([&] { return player.soundingCount() == 0; }, std::chrono::seconds(10))) << log.all();
    // What the device still had to play when the stream was done.
    const auto end = recorder.size() + sounds::sampleRateHz / 4;
    EXPECT_TRUE(eventually([&] { return recorder.size() >= end; }));
    return audiblePart(recorder.samples(first));
  }

  /// As another program does it.
  void makeDefault(const std::string& device) {
    run({"pw-metadata", "0", "default.configured.audio.sink", R"({"name":")" + device + R"("})", "Spa:String:JSON"});
    EXPECT_TRUE(eventually([&] { return machine.defaultOutput() == device; }));
  }

  Machine machine;
  MemoryLog log;
  SystemClocks clocks;
  LoopExecutor main;
  ThreadPoolExecutor background{2};
  TonePlayer player{Runtime{main, background, clocks, log, makeThreadSerialQueue}};
};

TEST_F(Sounds, GlassAndHeroAreHeardAtTheDeviceAsTheyWereComputed) {
  const MonitorRecorder recorder(session::sinkA);
  for (const std::string name : {"Glass", "Hero"}) {
    SCOPED_TRACE(name);
    const auto heard = heardAt(recorder, name);
    const auto computed = audiblePart(sounds::tone(name));
    ASSERT_FALSE(heard.empty());
    EXPECT_NEAR(decibels(peakOf(heard)), decibels(peakOf(computed)), 0.1);
    EXPECT_NEAR(static_cast<double>(heard.size()), static_cast<double>(computed.size()), 48.0);
    const double pitch = name == "Glass" ? 1567.98 : 698.46;
    EXPECT_NEAR(strength(heard, pitch), strength(computed, pitch), 0.02 * strength(computed, pitch));
  }
}

TEST_F(Sounds, ASoundLeavesNothingInTheGraph) {
  const MonitorRecorder recorder(session::sinkA);
  EXPECT_FALSE(heardAt(recorder, "Glass").empty());
  EXPECT_TRUE(eventually([] { return session::ourNodes().empty(); }));
}

TEST_F(Sounds, SoundsAreHeardAtTheDefaultDevice) {
  const MonitorRecorder desk(session::sinkA);
  const MonitorRecorder phones(session::sinkB);
  makeDefault(session::sinkB);
  const auto first = desk.size();
  EXPECT_FALSE(heardAt(phones, "Hero").empty());
  EXPECT_TRUE(audiblePart(desk.samples(first)).empty());
  makeDefault(session::sinkA);
}

TEST_F(Sounds, TwoSoundsAtOnceAreBothHeard) {
  const MonitorRecorder recorder(session::sinkA);
  EXPECT_TRUE(player.play("Hero"));
  const auto heard = heardAt(recorder, "Glass");
  ASSERT_FALSE(heard.empty());
  EXPECT_GT(decibels(static_cast<float>(strength(heard, 1567.98))), -45.0);
  EXPECT_GT(decibels(static_cast<float>(strength(heard, 698.46))), -45.0);
}

}  // namespace
}  // namespace quillmere::test
