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

constexpr const char* tornDown = "[org.example.Player] subgraph torn down (audio restored)";
constexpr const char* noProcess =
    "no CoreAudio process objects for org.example.Player yet (process must be playing audio for the tap to attach)";

struct ProcessTapEngineTest : EngineFixture {
  AudioObjectID headphones = hardware.addDevice({.uid = "headphones", .name = "Headphones"});
  std::unique_ptr<ProcessTapEngine> engine = std::make_unique<ProcessTapEngine>(hardware, time.runtime(log));

  int queued = 0;

  void settle() { time.runUntilIdle(); }
  /// Begins anew with an engine whose queue counts.
  void countWhatIsQueued();
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

class CountingQueue final : public SerialQueue {
 public:
  CountingQueue(std::unique_ptr<SerialQueue> inner, int& queued) : inner_(std::move(inner)), queued_(queued) {}
  void async(Work work) override {
    ++queued_;
    inner_->async(std::move(work));
  }
  void asyncAfter(Duration delay, Work work) override {
    ++queued_;
    inner_->asyncAfter(delay, std::move(work));
  }
  void sync(const Work& work) override { inner_->sync(work); }
  [[nodiscard]] bool isCurrent() const override { return inner_->isCurrent(); }

 private:
  std::unique_ptr<SerialQueue> inner_;
  int& queued_;
};

void ProcessTapEngineTest::countWhatIsQueued() {
  Runtime runtime = time.runtime(log);
  runtime.makeSerialQueue = [this](const std::string& label) {
    return std::make_unique<CountingQueue>(time.makeSerialQueue(label), queued);
  };
  engine = std::make_unique<ProcessTapEngine>(hardware, runtime);
}

TEST_F(ProcessTapEngineTest, AProcessListLikeTheLastOneTroublesTheQueueNoMore) {
  countWhatIsQueued();
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

TEST_F(ProcessTapEngineTest, AnApplicationWhoseCyclesHaveStoppedIsActiveNoLongerAndAtOnceWhenTheyRunAgain) {
  knowPlayer();
  gain(0.5F);
  playThrough(onlyAggregate(), 0.5F);
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre(player));
  time.advance(150ms);
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  playThrough(onlyAggregate(), 0.5F);
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre(player));
}

TEST_F(ProcessTapEngineTest, AskingForActivityWaitsForNothing) {
  knowPlayer();
  gain(0.5F);
  playThrough(onlyAggregate(), 0.5F);
  engine->applyGain(1.0F, player);
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre(player)) << "the call that releases it has only been queued";
  EXPECT_TRUE(hardware.runningAggregateOver(7));
  settle();
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
}

TEST_F(ProcessTapEngineTest, ARebuiltSubgraphIsNotActiveForWhatTheOldOneHeard) {
  knowPlayer();
  gain(0.5F);
  playThrough(onlyAggregate(), 0.5F);
  route("headphones");
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  playThrough(onlyAggregate(), 0.5F);
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre(player));
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

// Paths that take their time to come alive.

struct SlowPaths : ProcessTapEngineTest {
  /// 64 applications "00" to "63" with the process objects 1000 to 1063.
  void knowMany() {
    std::vector<Snapshot> snapshots;
    for (int index = 0; index < 64; ++index) {
      snapshots.push_back(process(nameOf(index), 1000 + static_cast<AudioObjectID>(index)));
    }
    processes(std::move(snapshots));
  }
  static std::string nameOf(int index) { return (index < 10 ? "0" : "") + std::to_string(index); }
  void lives(Duration delay) { hardware.setAggregateAliveDelay(delay); }
  /// How many lines of the log say this of any application.
  int linesWith(const std::string& text) const {
    const auto messages = log.messages();
    return static_cast<int>(std::count_if(messages.begin(), messages.end(), [&](const std::string& message) {
      return message.find(text) != std::string::npos;
    }));
  }
};

TEST_F(SlowPaths, SixtyFourApplicationsAreBuiltInTheTimeOfOne) {
  knowMany();
  lives(500ms);
  for (int index = 0; index < 64; ++index) engine->applyGain(0.1F, nameOf(index));
  settle();
  EXPECT_EQ(hardware.aggregates().size(), 64U);
  time.advance(490ms);
  EXPECT_FALSE(hardware.runningAggregateOver(1000));
  time.advance(10ms);
  for (AudioObjectID index = 0; index < 64; ++index) EXPECT_EQ(gainOf(1000 + index), 0.1F) << index;
}

TEST_F(SlowPaths, TheQueueIsFreeWhileAPathComesAlive) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  EXPECT_EQ(time.threadSleepCount(), 0);
  bool ran = false;
  engine->queue().async([&] { ran = true; });
  settle();
  EXPECT_TRUE(ran);
  EXPECT_FALSE(hardware.runningAggregateOver(7));
}

TEST_F(SlowPaths, NothingPollsOnceEveryPathIsBuilt) {
  countWhatIsQueued();
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  time.advance(1s);
  EXPECT_EQ(queued, 2 + 50) << "two calls, and a look every 10 ms";
  time.advance(10s);
  EXPECT_EQ(queued, 2 + 50);
}

TEST_F(SlowPaths, OneThatNeverComesAliveFailsAloneAndTheNextCallBuildsAnew) {
  processes({process("a", 1), process("b", 2)});
  lives(1h);
  engine->applyGain(0.5F, "a");
  settle();
  lives(500ms);
  engine->applyGain(0.25F, "b");
  time.advance(500ms);
  EXPECT_EQ(gainOf(2), 0.25F);
  EXPECT_FALSE(hardware.runningAggregateOver(1));
  time.advance(1990ms);
  EXPECT_EQ(linesWith("subgraph activation failed for a"), 0);
  time.advance(10ms);
  EXPECT_EQ(linesWith("subgraph activation failed for a"), 1);
  EXPECT_EQ(hardware.taps().size(), 1U);
  gain(0.5F, "a");
  time.advance(500ms);
  EXPECT_EQ(gainOf(1), 0.5F);
}

/// A host that takes 300 ms for each of ten applications, one after the other.
TEST_F(SlowPaths, AHostThatGetsOnWithOneAfterTheOtherIsGivenTheTimeForAll) {
  knowMany();
  for (int index = 0; index < 10; ++index) {
    lives(300ms * (index + 1));
    engine->applyGain(0.5F, nameOf(index));
    settle();
  }
  time.advance(3s);
  for (AudioObjectID index = 0; index < 10; ++index) EXPECT_TRUE(hardware.runningAggregateOver(1000 + index)) << index;
  EXPECT_EQ(linesWith("subgraph activation failed"), 0);
}

TEST_F(SlowPaths, AGainThatComesMeanwhileIsTakenWhenThePathIsBuilt) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  gain(0.25F);
  gain(0.75F);
  EXPECT_EQ(hardware.aggregates().size(), 1U) << "no second path beside the first";
  time.advance(500ms);
  ASSERT_TRUE(hardware.runningAggregateOver(7));
  float heard = 0.0F;
  for (int cycle = 0; cycle < 2000; ++cycle) heard = *playThrough(onlyAggregate(), 1.0F);
  EXPECT_NEAR(heard, 0.75F, 1e-4F);
}

TEST_F(SlowPaths, UnityThatComesMeanwhileReleasesTheApplicationWhenThePathIsBuilt) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  gain(1.0F);
  time.advance(500ms);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_EQ(log.messages().back(), tornDown);
  time.advance(5s);
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

TEST_F(SlowPaths, ARouteThatComesMeanwhileRebuildsAtTheTargetOfBefore) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  gain(0.25F);
  route("headphones");
  EXPECT_EQ(hardware.aggregates().size(), 1U);
  time.advance(500ms);
  EXPECT_FALSE(hardware.runningAggregateOver(7)) << "built, torn down and on its way to the other device";
  time.advance(500ms);
  EXPECT_EQ(deviceOf(7), "headphones");
  EXPECT_EQ(gainOf(7), 0.25F);
  EXPECT_EQ(hardware.aggregates().size(), 1U);
}

TEST_F(SlowPaths, AfterAPathThatFailsTheCallsBehindItStillTakeEffectInTheirOrder) {
  knowPlayer();
  lives(1h);
  gain(0.5F);
  gain(1.0F);
  route("headphones");
  gain(0.25F);
  lives(0s);
  time.advance(2s);
  // Unity finds nothing to release, the route builds at unity, and the last gain is the one that counts.
  EXPECT_EQ(deviceOf(7), "headphones");
  float heard = 0.0F;
  for (int cycle = 0; cycle < 2000; ++cycle) heard = *playThrough(onlyAggregate(), 1.0F);
  EXPECT_NEAR(heard, 0.25F, 1e-4F);
}

TEST_F(SlowPaths, ANewDefaultThatComesMeanwhileRebuildsThePathOnceItIsBuilt) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  hardware.setDefaultOutput(headphones);
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  time.advance(500ms);
  time.advance(500ms);
  EXPECT_EQ(deviceOf(7), "headphones");
  EXPECT_EQ(gainOf(7), 0.5F);
  EXPECT_EQ(hardware.aggregates().size(), 1U);
}

TEST_F(SlowPaths, ANewDefaultLeavesAPathAloneThatIsRoutedMeanwhile) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  route("headphones");
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  time.advance(1s);
  hardware.clearCalls();
  time.advance(1s);
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_EQ(deviceOf(7), "headphones");
}

TEST_F(SlowPaths, ANewDefaultRebuildsWhatIsBuiltAndWhatIsNotYet) {
  processes({process("a", 1), process("b", 2)});
  gain(0.5F, "a");
  lives(500ms);
  gain(0.25F, "b");
  hardware.setDefaultOutput(headphones);
  engine->refreshUnroutedSubgraphsForNewSystemDefault();
  time.advance(1s);
  EXPECT_EQ(deviceOf(1), "headphones");
  EXPECT_EQ(gainOf(1), 0.5F);
  EXPECT_EQ(deviceOf(2), "headphones");
  EXPECT_EQ(gainOf(2), 0.25F);
  EXPECT_EQ(hardware.aggregates().size(), 2U);
}

TEST_F(SlowPaths, AProcessListThatComesMeanwhileStartsNoSecondPath) {
  knowPlayer();
  lives(500ms);
  route("headphones");
  processes({});
  processes({process(player, 8)});
  EXPECT_EQ(hardware.aggregates().size(), 1U);
  time.advance(1s);
  EXPECT_EQ(deviceOf(7), "headphones") << "it keeps the processes that it was begun with";
  EXPECT_EQ(hardware.aggregates().size(), 1U);
}

TEST_F(SlowPaths, ARoutedApplicationThatComesBackMeanwhileIsTriedAgainAfterAFailure) {
  knowPlayer();
  lives(1h);
  route("headphones");
  processes({});
  processes({process(player, 8)});
  lives(0s);
  time.advance(2s);
  EXPECT_EQ(deviceOf(8), "headphones");
}

TEST_F(SlowPaths, ARouteThatIsClearedMeanwhileIsNotTakenUpByTheProcessList) {
  knowPlayer();
  lives(1h);
  route("headphones");
  route(std::nullopt);
  processes({});
  processes({process(player, 8)});
  lives(0s);
  time.advance(2s);
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

TEST_F(SlowPaths, StopTearsDownWhatIsHalfBuiltWithoutWaitingAndKeepsTheRoutesOfTheCallsBehindIt) {
  processes({process("a", 1), process("b", 2)});
  gain(0.5F, "a");
  lives(1h);
  gain(0.5F, "b");
  route("headphones", "b");
  const auto before = time.monotonicNow();
  engine->stop();
  EXPECT_EQ(time.monotonicNow(), before);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(hardware.aggregates(), IsEmpty());
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  time.advance(5s);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  lives(0s);
  gain(0.25F, "b");
  EXPECT_EQ(deviceOf(2), "headphones");
}

TEST_F(SlowPaths, AnEngineThatGoesTakesWhatIsHalfBuiltWithIt) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  gain(0.25F);
  log.clear();
  engine.reset();
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(hardware.aggregates(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty()) << "nothing that waited runs any more";
  time.advance(5s);
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

TEST_F(SlowPaths, AHalfBuiltPathIsNotActive) {
  knowPlayer();
  lives(500ms);
  gain(0.5F);
  EXPECT_THAT(engine->activeBundleIDs(), IsEmpty());
  time.advance(500ms);
  playThrough(onlyAggregate(), 0.5F);
  EXPECT_THAT(engine->activeBundleIDs(), ElementsAre(player));
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
  engine->queue().sync([] {});
  EXPECT_FALSE(hardware.runningAggregateOver(1));
  EXPECT_TRUE(hardware.runningAggregateOver(2));
  engine.reset();
  EXPECT_THAT(hardware.taps(), IsEmpty());
}

TEST_F(SlowPaths, OnARealQueueTheCallersAreAnsweredWhilePathsComeAlive) {
  SystemClocks clocks;
  MemoryAudioHardware machine(time.main(), clocks);
  machine.setDefaultOutput(machine.addDevice({.uid = "speakers", .name = "Speakers"}));
  machine.setAggregateAliveDelay(30ms);
  const Runtime runtime{time.main(), time.background(), clocks, log,
                        [](std::string label) { return makeThreadSerialQueue(std::move(label)); }};
  engine = std::make_unique<ProcessTapEngine>(machine, runtime);
  std::vector<Snapshot> snapshots;
  for (AudioObjectID object = 1; object <= 16; ++object) snapshots.push_back(process(std::to_string(object), object));
  engine->updateProcessMap(std::move(snapshots));
  std::thread caller([&] {
    for (int index = 1; index <= 16; ++index) engine->applyGain(0.5F, std::to_string(index));
    for (int index = 1; index <= 16; index += 2) engine->applyGain(1.0F, std::to_string(index));
  });
  const auto areRunning = [&] {
    for (AudioObjectID object = 1; object <= 16; ++object) {
      if (machine.runningAggregateOver(object).has_value() != (object % 2 == 0)) return false;
    }
    return true;
  };
  const auto deadline = std::chrono::steady_clock::now() + 20s;
  caller.join();
  while (!areRunning() && std::chrono::steady_clock::now() < deadline) {
    static_cast<void>(engine->activeBundleIDs());
    std::this_thread::yield();
  }
  EXPECT_TRUE(areRunning());
  engine->applyGain(0.25F, "1");
  engine.reset();
  EXPECT_THAT(machine.taps(), IsEmpty());
  EXPECT_THAT(machine.aggregates(), IsEmpty());
}

}  // namespace
}  // namespace quillmere
