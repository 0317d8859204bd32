// Applications whose output is missing, on a machine that plays them elsewhere and on one that doesn't.
#include <gmock/gmock.h>

#include <memory>

#include "EngineFixture.h"
#include "engine/ProcessTapEngine.h"

namespace quillmere {
namespace {

using testing::IsEmpty;

struct MissingOutputTest : EngineFixture {
  std::unique_ptr<ProcessTapEngine> engine = std::make_unique<ProcessTapEngine>(hardware, time.runtime(log));

  /// Until a path that doesn't come alive is given up.
  void settle() { time.advance(3s); }
  /// The application is there at this gain, and routed if a device is named.
  void play(float gain, const std::optional<std::string>& route) {
    engine->updateProcessMap({{player, 1, 7}});
    engine->applyGain(gain, player);
    if (route) engine->applyRouting(route, player);
    settle();
  }
  AudioObjectID plug(const std::string& uid) {
    const auto device = hardware.addDevice({.uid = uid, .name = uid});
    settle();
    return device;
  }
  AudioObjectID aggregate() const { return hardware.runningAggregateOver(7).value_or(0); }
};

TEST_F(MissingOutputTest, OnAGraphARouteToADeviceThatIsMissingPlaysOnTheDefaultAtItsGain) {
  hardware.setOutputsFall(true);
  play(0.5F, "headphones");
  ASSERT_NE(aggregate(), 0U);
  EXPECT_EQ(hardware.outputOf(aggregate()), speakers);
  EXPECT_EQ(playThrough(aggregate(), 1.0F), 0.5F);
}

TEST_F(MissingOutputTest, OnAGraphADeviceThatComesIsPlayedOnWithoutTheEngine) {
  hardware.setOutputsFall(true);
  play(0.5F, "headphones");
  const auto before = aggregate();
  hardware.clearCalls();
  const auto headphones = plug("headphones");
  EXPECT_EQ(aggregate(), before);
  EXPECT_EQ(hardware.outputOf(before), headphones);
  hardware.removeDevice(headphones);
  settle();
  EXPECT_EQ(hardware.outputOf(before), speakers);
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
}

TEST_F(MissingOutputTest, OnAGraphAnUnroutedApplicationFollowsTheDefaultByItself) {
  hardware.setOutputsFall(true);
  const auto headphones = plug("headphones");
  play(0.5F, std::nullopt);
  const auto before = aggregate();
  hardware.setDefaultOutput(headphones);
  settle();
  EXPECT_EQ(aggregate(), before);
  EXPECT_EQ(hardware.outputOf(before), headphones);
}

TEST_F(MissingOutputTest, AnApplicationThatGetsAGainWhileThereIsNoDefaultIsTappedWhenTheNextOneTakesOver) {
  hardware.setOutputsFall(true);
  hardware.setLeavesGaps(true);
  const auto headphones = plug("headphones");
  hardware.removeDevice(speakers);
  play(0.5F, std::nullopt);
  EXPECT_EQ(aggregate(), 0U) << "there is nothing to play on";
  hardware.setDefaultOutput(headphones);
  engine->applyGain(0.4F, player);
  settle();
  ASSERT_NE(aggregate(), 0U);
  EXPECT_EQ(hardware.outputOf(aggregate()), headphones);
}

TEST_F(MissingOutputTest, WhereNothingFallsARouteToADeviceThatIsMissingLeavesTheApplicationUntouched) {
  play(0.5F, "headphones");
  EXPECT_EQ(aggregate(), 0U);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(hardware.aggregates(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
