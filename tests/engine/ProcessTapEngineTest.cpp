// Which applications have a subgraph, when it comes and when it goes.
#include "engine/ProcessTapEngine.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <thread>

#include "EngineFixture.h"
#include "runtime/Threads.h"

namespace quillmere {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;
using Snapshot = CoreAudioProcessMonitor::Snapshot;

constexpr const char* player = "org.example.Player";
constexpr const char* tornDown = "[org.example.Player] subgraph torn down (audio restored)";
constexpr const char* noProcess =
    "no CoreAudio process objects for org.example.Player yet (process must be playing audio for the tap to attach)";

struct ProcessTapEngineTest : EngineFixture {
  AudioObjectID headphones = hardware.addDevice({.uid = "headphones", .name = "Headphones"});
  std::unique_ptr<ProcessTapEngine> engine = std::make_unique<ProcessTapEngine>(hardware, time.runtime(log));

  void settle() { time.runUntilIdle(); }
  void gain(float value, const std::string& bundleID = player) {
    engine->applyGain(value, bundleID);
    settle();
  }
  void route(const std::optional<std::string>& uid, const std::string& bundleID = player) {
    engine->applyRouting(uid, bundleID);
    settle();
  }
  void processes(std::vector<Snapshot> snapshots) {
    engine->updateProcessMap(std::move(snapshots));
    settle();
  }
  static Snapshot process(const std::string& bundleID, AudioObjectID object) { return {bundleID, 1, object}; }
  void knowPlayer() { processes({process(player, 7)}); }

  std::optional<std::string> deviceOf(AudioObjectID object) const {
    const auto aggregate = hardware.runningAggregateOver(object);
    if (!aggregate) return std::nullopt;
    return hardware.aggregateDescription(*aggregate)->mainDeviceUID;
  }
  /// The gain a new subgraph plays its first frame at.
  std::optional<float> gainOf(AudioObjectID object) {
    const auto aggregate = hardware.runningAggregateOver(object);
    return aggregate ? playThrough(*aggregate, 1.0F) : std::nullopt;
  }
};

TEST_F(ProcessTapEngineTest, CallsOnlyQueueAndReturn) {
  knowPlayer();
  hardware.clearCalls();
  engine->applyGain(0.5F, player);
  engine->applyRouting("headphones", player);
  engine->updateProcessMap({});
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  EXPECT_THAT(hardware.calls(), IsEmpty());
  settle();
  EXPECT_THAT(hardware.calls(), Not(IsEmpty()));
}

/// Counts what is queued.
class CountingQueue final : public SerialQueue {
 public:
  CountingQueue(std::unique_ptr<SerialQueue> inner, int& queued) : inner_(std::move(inner)), queued_(queued) {}
  void async(Work work) override {
    ++queued_;
    inner_->async(std::move(work));
  }
  void sync(const Work& work) override { inner_->sync(work); }
  [[nodiscard]] bool isCurrent() const override { return inner_->isCurrent(); }

 private:
  std::unique_ptr<SerialQueue> inner_;
  int& queued_;
};

TEST_F(ProcessTapEngineTest, AProcessListLikeTheLastOneTroublesTheQueueNoMore) {
  int queued = 0;
  Runtime runtime = time.runtime(log);
  runtime.makeSerialQueue = [&](const std::string& label) {
    return std::make_unique<CountingQueue>(time.makeSerialQueue(label), queued);
  };
  engine = std::make_unique<ProcessTapEngine>(hardware, runtime);
  processes({});
  EXPECT_EQ(queued, 1) << "the first list is news, whatever it holds";
  engine->updateProcessMap({process("a", 1)});
  engine->updateProcessMap({process("a", 1)});
  settle();
  processes({process("a", 1)});
  EXPECT_EQ(queued, 2);
  processes({process("a", 2)});
  processes({process("a", 1)});
  EXPECT_EQ(queued, 4);
}

// Gain.

TEST_F(ProcessTapEngineTest, AGainThatIsNotUnityBuildsASubgraphAtThatGain) {
  knowPlayer();
  gain(0.5F);
  EXPECT_EQ(deviceOf(7), "speakers");
  EXPECT_EQ(gainOf(7), 0.5F);
}

TEST_F(ProcessTapEngineTest, EveryGainIsLogged) {
  gain(0.126F);
  EXPECT_EQ(log.lines().front(), (RecordingLogSink::Line{LogLevel::info, "app.quillmere.host", "ProcessTapEngine",
                                                         "applyGain org.example.Player → 0.13 (routed=false)"}));
  route("headphones");
  log.clear();
  gain(1.0F);
  EXPECT_EQ(log.messages().front(), "applyGain org.example.Player → 1.00 (routed=true)");
}

TEST_F(ProcessTapEngineTest, UnityBuildsNothing) {
  knowPlayer();
  gain(1.0F);
  gain(1.003F);
  gain(0.996F);
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, UnityIsAStrictHalfPercentInSinglePrecision) {
  knowPlayer();
  gain(0.99F);
  EXPECT_TRUE(hardware.runningAggregateOver(7));
  gain(1.0F);
  // The nearest float to 0.995 lies 0.00499998 below 1: unity. The next one below is not.
  gain(0.995F);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  gain(std::nextafter(0.995F, 0.0F));
  EXPECT_EQ(hardware.taps().size(), 1U);
}

TEST_F(ProcessTapEngineTest, BackToUnityReleasesTheApplicationAtOnce) {
  knowPlayer();
  gain(0.5F);
  log.clear();
  gain(0.996F);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(log.messages(), ElementsAre("applyGain org.example.Player → 1.00 (routed=false)", tornDown));
}

TEST_F(ProcessTapEngineTest, AnotherGainMovesTheTargetOfTheLiveSubgraph) {
  knowPlayer();
  gain(0.5F);
  const auto aggregate = onlyAggregate();
  gain(0.25F);
  EXPECT_EQ(onlyAggregate(), aggregate);
  float heard = 0.5F;
  for (int cycle = 0; cycle < 2000; ++cycle) heard = *playThrough(aggregate, 1.0F);
  EXPECT_NEAR(heard, 0.25F, 1e-4F);
}

TEST_F(ProcessTapEngineTest, AbsurdGainsAreLimited) {
  knowPlayer();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  gain(-1.0F);
  EXPECT_EQ(gainOf(7), 0.0F);
  for (const float high : {7.0F, infinity, std::numeric_limits<float>::quiet_NaN()}) {
    gain(0.0F);
    ASSERT_TRUE(hardware.runningAggregateOver(7));
    gain(high);
    EXPECT_THAT(hardware.taps(), IsEmpty()) << high;
    EXPECT_EQ(log.messages()[log.messages().size() - 2], "applyGain org.example.Player → 1.00 (routed=false)");
  }
  gain(-infinity);
  EXPECT_EQ(gainOf(7), 0.0F);
}

TEST_F(ProcessTapEngineTest, AGainBeforeAnyProcessIsOnlyALogLine) {
  gain(0.5F);
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  EXPECT_EQ(log.lines().back(),
            (RecordingLogSink::Line{LogLevel::standard, "app.quillmere.host", "ProcessTapEngine", noProcess}));
  // The process list alone does not bring it about; the same call again does.
  knowPlayer();
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  gain(0.5F);
  EXPECT_EQ(gainOf(7), 0.5F);
}

TEST_F(ProcessTapEngineTest, AFailedActivationIsLoggedAndLeavesNoEntry) {
  knowPlayer();
  hardware.fail({.method = Method::createProcessTap}, -50);
  gain(0.5F);
  EXPECT_EQ(log.lines().back(), (RecordingLogSink::Line{LogLevel::error, "app.quillmere.host", "ProcessTapEngine",
                                                        "subgraph activation failed for org.example.Player"}));
  hardware.clearCalls();
  knowPlayer();
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  gain(0.5F);
  EXPECT_TRUE(hardware.runningAggregateOver(7));
}

TEST_F(ProcessTapEngineTest, ASlowAggregateHoldsUpOnlyWhatIsQueuedBehindIt) {
  knowPlayer();
  hardware.setAggregateAliveDelay(1h);
  gain(0.5F);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_EQ(log.lines().back().message, "subgraph activation failed for org.example.Player");
}

// Routing.

TEST_F(ProcessTapEngineTest, ARouteAtUnityGetsASubgraphOnItsDevice) {
  knowPlayer();
  route("headphones");
  EXPECT_EQ(deviceOf(7), "headphones");
  EXPECT_EQ(gainOf(7), 1.0F);
  EXPECT_THAT(log.messages(), Contains("applyRouting org.example.Player → headphones"));
}

TEST_F(ProcessTapEngineTest, ARoutedApplicationKeepsItsSubgraphAtUnity) {
  knowPlayer();
  route("headphones");
  gain(0.5F);
  gain(1.0F);
  EXPECT_EQ(deviceOf(7), "headphones");
}

TEST_F(ProcessTapEngineTest, TheSameRouteTwiceDoesAndLogsNothing) {
  knowPlayer();
  route("headphones");
  hardware.clearCalls();
  log.clear();
  route("headphones");
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, ClearingARouteThatIsNotThereDoesAndLogsNothing) {
  knowPlayer();
  hardware.clearCalls();
  log.clear();
  route(std::nullopt);
  route("");
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, AnEmptyRouteClearsLikeAnAbsentOne) {
  knowPlayer();
  route("headphones");
  route("");
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(log.messages(), Contains("applyRouting org.example.Player → system-default"));
  gain(1.0F);
  EXPECT_EQ(log.messages().back(), "applyGain org.example.Player → 1.00 (routed=false)");
}

TEST_F(ProcessTapEngineTest, ClearingARouteBelowUnityRebuildsOnTheDefaultAtThatGain) {
  knowPlayer();
  route("headphones");
  gain(0.5F);
  route(std::nullopt);
  EXPECT_EQ(deviceOf(7), "speakers");
  EXPECT_EQ(gainOf(7), 0.5F);
}

TEST_F(ProcessTapEngineTest, ClearingARouteAtUnityLeavesTheApplicationUntouched) {
  knowPlayer();
  route("headphones");
  hardware.clearCalls();
  route(std::nullopt);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(hardware.lifeCalls(), Not(Contains(Method::createProcessTap)));
}

TEST_F(ProcessTapEngineTest, ANewRouteTearsDownBeforeItBuildsAndKeepsTheTargetGain) {
  knowPlayer();
  gain(0.5F);
  gain(0.25F);
  hardware.clearCalls();
  route("headphones");
  EXPECT_THAT(
      hardware.lifeCalls(),
      ElementsAre(Method::stopDevice, Method::destroyIOProc, Method::destroyAggregateDevice, Method::destroyProcessTap,
                  Method::createProcessTap, Method::createAggregateDevice, Method::createIOProc, Method::startDevice));
  EXPECT_EQ(deviceOf(7), "headphones");
  EXPECT_EQ(gainOf(7), 0.25F);
}

TEST_F(ProcessTapEngineTest, ARouteWithoutAProcessIsKeptAndTakenUpWhenTheApplicationFirstAppears) {
  route("headphones");
  EXPECT_EQ(log.messages().back(), noProcess);
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  knowPlayer();
  EXPECT_EQ(deviceOf(7), "headphones");
  EXPECT_EQ(gainOf(7), 1.0F);
}

TEST_F(ProcessTapEngineTest, ARoutedApplicationThatWasThereBeforeIsNotRetriedByTheProcessList) {
  knowPlayer();
  hardware.fail({.method = Method::createProcessTap}, -50);
  route("headphones");
  hardware.clearCalls();
  processes({process(player, 8)});
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  // Gone and back again, it counts as new.
  processes({});
  processes({process(player, 8)});
  EXPECT_EQ(deviceOf(8), "headphones");
}

TEST_F(ProcessTapEngineTest, ARoutedApplicationThatComesBackKeepsItsOldSubgraph) {
  knowPlayer();
  route("headphones");
  hardware.clearCalls();
  processes({});
  processes({process(player, 12)});
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  EXPECT_EQ(deviceOf(7), "headphones");
}

// The process list.

TEST_F(ProcessTapEngineTest, HelpersFallUnderTheirApplicationAndOneTapCoversThemAll) {
  processes({process("org.example.Browser", 3), process("org.example.Browser.helper", 5),
             process("org.example.Browser.HELPER.Renderer", 4)});
  EXPECT_THAT(log.messages(), ElementsAre("processMap = [org.example.Browser]"));
  gain(0.5F, "org.example.Browser");
  EXPECT_THAT(hardware.tapDescription(onlyTap())->processes, UnorderedElementsAre(3, 4, 5));
}

TEST_F(ProcessTapEngineTest, ProcessesWithoutAnIdentifierAreSkipped) {
  processes({process("", 3)});
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, OnlyAChangeOfTheKeysIsLogged) {
  processes({process("b", 1), process("a", 2)});
  EXPECT_THAT(log.lines(), ElementsAre(RecordingLogSink::Line{LogLevel::info, "app.quillmere.host", "ProcessTapEngine",
                                                              "processMap = [a, b]"}));
  processes({process("a", 7), process("b", 8)});
  EXPECT_EQ(log.lines().size(), 1U);
  processes({});
  EXPECT_EQ(log.messages().back(), "processMap = []");
}

TEST_F(ProcessTapEngineTest, TheSameKeysWithOtherObjectsChangeNoSubgraph) {
  knowPlayer();
  gain(0.5F);
  hardware.clearCalls();
  processes({process(player, 8), process("org.example.Player.helper", 9)});
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  // A rebuild for another reason takes them in.
  route("headphones");
  EXPECT_THAT(hardware.tapDescription(onlyTap())->processes, UnorderedElementsAre(8, 9));
}

TEST_F(ProcessTapEngineTest, TheSubgraphOfAnApplicationThatIsGoneStays) {
  knowPlayer();
  gain(0.5F);
  processes({});
  EXPECT_TRUE(hardware.runningAggregateOver(7));
  gain(1.0F);
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

// The system default.

TEST_F(ProcessTapEngineTest, ANewDefaultRebuildsTheUnroutedOnesAtTheirTargetsAndLeavesTheRoutedAlone) {
  processes({process("a", 1), process("b", 2), process("c", 3)});
  gain(0.5F, "a");
  gain(0.9F, "b");
  gain(0.25F, "b");
  route("speakers", "c");
  const auto routed = hardware.runningAggregateOver(3);
  hardware.setDefaultOutput(headphones);
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  settle();
  EXPECT_EQ(deviceOf(1), "headphones");
  EXPECT_EQ(gainOf(1), 0.5F);
  EXPECT_EQ(deviceOf(2), "headphones");
  EXPECT_EQ(gainOf(2), 0.25F);
  EXPECT_EQ(hardware.runningAggregateOver(3), routed);
}

TEST_F(ProcessTapEngineTest, ARebuildThatFailsLeavesTheApplicationUntouched) {
  knowPlayer();
  gain(0.5F);
  hardware.setDefaultOutput(0);
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  settle();
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_EQ(log.messages().back(), "subgraph activation failed for org.example.Player");
}

// Activity.

TEST_F(ProcessTapEngineTest, AnApplicationIsActiveWhileItsInputIsAboveTheThreshold) {
  processes({process("a", 1), process("b", 2)});
  gain(0.5F, "a");
  gain(0.0F, "b");
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  playThrough(*hardware.runningAggregateOver(1), 0.001F);
  playThrough(*hardware.runningAggregateOver(2), 0.0011F);
  // Strictly above; and muted or not, it is the input that counts.
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre("b"));
  playThrough(*hardware.runningAggregateOver(2), 0.0F);
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, AskingForActivityWaitsForWhatIsQueued) {
  engine->updateProcessMap({process(player, 7)});
  engine->applyGain(0.5F, player);
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  EXPECT_TRUE(hardware.runningAggregateOver(7));
}

// Stop and the end.

TEST_F(ProcessTapEngineTest, StopTearsEverySubgraphDownAndKeepsRoutesAndProcesses) {
  processes({process("a", 1), process("b", 2)});
  gain(0.5F, "a");
  route("headphones", "b");
  log.clear();
  engine->stop();
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(log.messages(), UnorderedElementsAre("[a] subgraph torn down (audio restored)",
                                                   "[b] subgraph torn down (audio restored)"));
  gain(0.5F, "b");
  EXPECT_EQ(deviceOf(2), "headphones");
}

TEST_F(ProcessTapEngineTest, WhatIsStillQueuedWhenTheEngineGoesDoesNothing) {
  knowPlayer();
  gain(0.5F);
  engine->applyGain(0.25F, "org.example.Other");
  log.clear();
  engine.reset();
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(log.messages(), ElementsAre(tornDown));
}

using ProcessTapEngineDeathTest = ProcessTapEngineTest;

TEST_F(ProcessTapEngineDeathTest, SpawningOffTheQueueStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(engine->spawnSubgraphLocked(player, 0.5F), "off its queue");
}

TEST_F(ProcessTapEngineDeathTest, TearingDownOffTheQueueStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(engine->tearDownSubgraphLocked(player), "off its queue");
}

TEST_F(ProcessTapEngineDeathTest, WaitingForTheQueueOnTheQueueStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(engine->queue().sync([&] { engine->stop(); }), "wait for itself");
  EXPECT_DEATH(engine->queue().sync([&] { static_cast<void>(engine->activeBundleIDs()); }), "wait for itself");
}

TEST_F(ProcessTapEngineDeathTest, AskingForTheSharedEngineBeforeOneIsInstalledStopsTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(ProcessTapEngine::shared(), "no engine is installed");
}

TEST_F(ProcessTapEngineTest, TheInstalledEngineIsTheSharedOneForAsLongAsItLives) {
  engine->install();
  EXPECT_EQ(&ProcessTapEngine::shared(), engine.get());
  ProcessTapEngine second(hardware, time.runtime(log));
  second.install();
  engine.reset();
  EXPECT_EQ(&ProcessTapEngine::shared(), &second);
}

// Real threads.

TEST_F(ProcessTapEngineTest, ManyThreadsMayCallAtOnceOnARealQueue) {
  Runtime runtime = time.runtime(log);
  runtime.makeSerialQueue = [](std::string label) { return makeThreadSerialQueue(std::move(label)); };
  engine = std::make_unique<ProcessTapEngine>(hardware, runtime);
  engine->updateProcessMap({process("a", 1), process("b", 2)});
  std::vector<std::thread> callers;
  for (int caller = 0; caller < 4; ++caller) {
    callers.emplace_back([&, caller] {
      for (int i = 0; i < 50; ++i) {
        engine->applyGain(static_cast<float>(i % 3) / 2.0F, caller % 2 == 0 ? "a" : "b");
        if (i % 10 == 0)
          engine->applyRouting(i % 20 == 0 ? std::optional<std::string>("headphones") : std::nullopt, "b");
        if (i % 25 == 0) static_cast<void>(engine->activeBundleIDs());
      }
    });
  }
  for (auto& caller : callers) caller.join();
  engine->applyRouting(std::nullopt, "b");
  engine->applyGain(1.0F, "a");
  engine->applyGain(0.5F, "b");
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  EXPECT_FALSE(hardware.runningAggregateOver(1));
  EXPECT_TRUE(hardware.runningAggregateOver(2));
  engine.reset();
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
