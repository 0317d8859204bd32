// One application's audio path: what it is made of, in which order, and what is left when a step fails.
#include "engine/ProcessTapSubgraph.h"

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <thread>

#include "EngineFixture.h"

namespace quillmere {

static void PrintTo(ProcessTapSubgraph::Progress progress, std::ostream* stream) {
  static constexpr const char* names[] = {"waiting", "live", "failed"};
  *stream << names[static_cast<int>(progress)];
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Progress = ProcessTapSubgraph::Progress;

struct ProcessTapSubgraphTest : EngineFixture {
  std::unique_ptr<ProcessTapSubgraph> subgraph = make();

  std::unique_ptr<ProcessTapSubgraph> make() {
    return std::make_unique<ProcessTapSubgraph>(hardware, time, "org.example.Player", std::vector<AudioObjectID>{7, 9},
                                                Logger(log, "ProcessTapEngine"));
  }
  /// Asks as often as it is to be asked, until the waiting has an end.
  Progress goOnWaiting(Progress progress) {
    while (progress == Progress::waiting) {
      time.sleepThread(ProcessTapSubgraph::alivePoll);
      progress = subgraph->proceed();
    }
    return progress;
  }
  void expectNothingLeft() {
    EXPECT_THAT(hardware.taps(), IsEmpty());
    EXPECT_THAT(hardware.aggregates(), IsEmpty());
    EXPECT_FALSE(subgraph->isActive());
  }
  void expectOnlyErrorLine(const std::string& message) {
    EXPECT_THAT(log.lines(), ElementsAre(RecordingLogSink::Line{LogLevel::error, "app.quillmere.host",
                                                                "ProcessTapEngine", message}));
  }
};

TEST_F(ProcessTapSubgraphTest, ConstructingTouchesNoAudioObject) { EXPECT_THAT(hardware.calls(), IsEmpty()); }

TEST_F(ProcessTapSubgraphTest, ActivatingBuildsTapFormatAggregateAndIOInThisOrder) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  EXPECT_TRUE(subgraph->isActive());
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::createProcessTap, Method::createAggregateDevice,
                                                Method::createIOProc, Method::startDevice));
  Methods steps;
  for (const auto& call : hardware.calls()) steps.push_back(call.method);
  EXPECT_THAT(steps, ElementsAre(Method::readUInt32, Method::readString, Method::createProcessTap, Method::readFormat,
                                 Method::createAggregateDevice, Method::readUInt32, Method::createIOProc,
                                 Method::startDevice, Method::addPropertyListener, Method::readFormat));
}

TEST_F(ProcessTapSubgraphTest, TheTapIsPrivateIncludesTheProcessesAndMutesOnlyWhileRead) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  const auto tap = hardware.tapDescription(onlyTap());
  ASSERT_TRUE(tap);
  EXPECT_THAT(tap->processes, ElementsAre(7, 9));
  EXPECT_EQ(tap->muteBehavior, MuteBehavior::mutedWhenTapped);
  EXPECT_TRUE(tap->isPrivate);
  EXPECT_FALSE(tap->isExclusive);
}

TEST_F(ProcessTapSubgraphTest, TheAggregateIsDescribedToTheLetter) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  const auto uuid = hardware.tapDescription(onlyTap())->uuid.text();
  const auto aggregate = hardware.aggregateDescription(onlyAggregate());
  ASSERT_TRUE(aggregate);
  EXPECT_EQ(aggregate->name, "quillmere-org.example.Player");
  EXPECT_EQ(aggregate->uid, "app.quillmere.aggregate." + uuid);
  EXPECT_EQ(aggregate->mainDeviceUID, "speakers");
  EXPECT_TRUE(aggregate->isPrivate);
  EXPECT_FALSE(aggregate->isStacked);
  EXPECT_TRUE(aggregate->tapAutoStart);
  EXPECT_THAT(aggregate->subDeviceUIDs, ElementsAre("speakers"));
  ASSERT_EQ(aggregate->taps.size(), 1U);
  EXPECT_EQ(aggregate->taps[0].uid, uuid);
  EXPECT_TRUE(aggregate->taps[0].driftCompensation);
  EXPECT_EQ(hardware.ioQueueLabel(onlyAggregate()), "app.quillmere.subgraph.io");
}

TEST_F(ProcessTapSubgraphTest, AnUnroutedPathFollowsTheDefaultAndARoutedOneDoesNot) {
  ASSERT_EQ(subgraph->activate(0.5F, ""), Progress::live);
  EXPECT_TRUE(hardware.aggregateDescription(onlyAggregate())->followsDefaultOutput);
  subgraph->invalidate();
  hardware.addDevice({.uid = "headphones", .name = "Headphones"});
  subgraph = make();
  ASSERT_EQ(subgraph->activate(0.5F, "headphones"), Progress::live);
  EXPECT_FALSE(hardware.aggregateDescription(onlyAggregate())->followsDefaultOutput);
  EXPECT_EQ(hardware.aggregateDescription(onlyAggregate())->mainDeviceUID, "headphones");
}

TEST_F(ProcessTapSubgraphTest, ARoutedPathDoesNotAskForTheDefault) {
  hardware.setDefaultOutput(0);
  hardware.addDevice({.uid = "headphones", .name = "Headphones"});
  EXPECT_EQ(subgraph->activate(0.5F, "headphones"), Progress::live);
}

TEST_F(ProcessTapSubgraphTest, GoingLiveIsLogged) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  EXPECT_THAT(log.lines(),
              ElementsAre(RecordingLogSink::Line{
                  LogLevel::info, "app.quillmere.host", "ProcessTapEngine",
                  logText("[org.example.Player] subgraph live (tap %u, agg %u, 2ch @ 48000.000000Hz, out speakers)",
                          onlyTap(), onlyAggregate())}));
}

TEST_F(ProcessTapSubgraphTest, TheFirstFrameAlreadyPlaysAtTheRequestedGain) {
  ASSERT_EQ(subgraph->activate(0.25F, std::nullopt), Progress::live);
  EXPECT_EQ(playThrough(onlyAggregate(), 0.8F), 0.25F * 0.8F);
  EXPECT_GT(subgraph->recentInputPeak(), 0.7F);
}

TEST_F(ProcessTapSubgraphTest, GainsOutsideTheRangeAreLimitedWhenActivating) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  for (const auto& [asked, taken] :
       {std::pair{-1.0F, 0.0F}, {7.0F, 1.0F}, {nan, 1.0F}, {infinity, 1.0F}, {-infinity, 0.0F}}) {
    subgraph = make();
    ASSERT_EQ(subgraph->activate(asked, std::nullopt), Progress::live);
    EXPECT_EQ(subgraph->targetGain(), taken) << asked;
    EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), taken) << asked;
  }
}

TEST_F(ProcessTapSubgraphTest, ANewTargetIsLimitedToOneAndHeardFromTheNextCycleOn) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  subgraph->setTargetGain(3.0F);
  EXPECT_EQ(subgraph->targetGain(), 1.0F);
  subgraph->setTargetGain(0.0F);
  EXPECT_LT(*playThrough(onlyAggregate(), 1.0F), 0.5F);
}

TEST_F(ProcessTapSubgraphTest, ATapRateOfZeroGlidesAsAtEightThousandHertz) {
  hardware.setTapFormat({});
  ASSERT_EQ(subgraph->activate(1.0F, std::nullopt), Progress::live);
  subgraph->setTargetGain(0.0F);
  const auto c = static_cast<float>(1.0 - std::exp(-1.0 / 240.0));
  EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), 1.0F + (0.0F - 1.0F) * c);
}

TEST_F(ProcessTapSubgraphTest, AChangeOfTheTapsRateWhileItRunsKeepsTheTimeOfTheGlide) {
  ASSERT_EQ(subgraph->activate(1.0F, std::nullopt), Progress::live);
  hardware.changeTapFormat({96000.0, fourCC("lpcm"), 9, 8, 1, 8, 2, 32});
  time.runUntilIdle();
  subgraph->setTargetGain(0.0F);
  const auto c = static_cast<float>(1.0 - std::exp(-1.0 / (96000.0 * 0.03)));
  EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), 1.0F + (0.0F - 1.0F) * c);
}

TEST_F(ProcessTapSubgraphTest, ARateThatIsUnreadableWhileItRunsChangesNothing) {
  ASSERT_EQ(subgraph->activate(1.0F, std::nullopt), Progress::live);
  hardware.fail({.method = Method::readFormat}, unspecifiedError);
  hardware.changeTapFormat({96000.0, fourCC("lpcm"), 9, 8, 1, 8, 2, 32});
  time.runUntilIdle();
  subgraph->setTargetGain(0.0F);
  const auto c = static_cast<float>(1.0 - std::exp(-1.0 / (48000.0 * 0.03)));
  EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), 1.0F + (0.0F - 1.0F) * c);
}

TEST_F(ProcessTapSubgraphTest, AnEndedPathListensNoMore) {
  ASSERT_EQ(subgraph->activate(1.0F, std::nullopt), Progress::live);
  EXPECT_EQ(hardware.listenerCount(onlyTap(), {audio::tapFormat, audio::scopeGlobal, 0}), 1U);
  const auto tap = onlyTap();
  subgraph->invalidate();
  EXPECT_EQ(hardware.listenerCount(tap, {audio::tapFormat, audio::scopeGlobal, 0}), 0U);
}

TEST_F(ProcessTapSubgraphTest, InvalidatingStopsTheIOThenDropsTheDeviceThenTheTap) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  hardware.clearCalls();
  log.clear();
  subgraph->invalidate();
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::stopDevice, Method::destroyIOProc,
                                                Method::destroyAggregateDevice, Method::destroyProcessTap));
  EXPECT_THAT(log.lines(),
              ElementsAre(RecordingLogSink::Line{LogLevel::info, "app.quillmere.host", "ProcessTapEngine",
                                                 "[org.example.Player] subgraph torn down (audio restored)"}));
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, TheHostIsToldTheGainThatWasHeardLast) {
  ASSERT_EQ(subgraph->activate(1.0F, std::nullopt), Progress::live);
  const auto aggregate = onlyAggregate();
  subgraph->setTargetGain(0.0F);
  const auto heard = playThrough(aggregate, 1.0F, 1);
  subgraph->invalidate();
  EXPECT_EQ(hardware.appliedGain(aggregate), heard);
}

TEST_F(ProcessTapSubgraphTest, InvalidatingTwiceDoesAndLogsNothingTheSecondTime) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  subgraph->invalidate();
  hardware.clearCalls();
  log.clear();
  subgraph->invalidate();
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessTapSubgraphTest, TheDestructorTearsALivePathDown) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  subgraph.reset();
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_THAT(hardware.aggregates(), IsEmpty());
  EXPECT_EQ(log.count(LogLevel::info, "[org.example.Player] subgraph torn down (audio restored)"), 1);
}

TEST_F(ProcessTapSubgraphTest, FailuresDuringTearDownAreIgnoredAndTheRestStillGoes) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  for (const auto method : {Method::stopDevice, Method::destroyIOProc, Method::destroyAggregateDevice}) {
    hardware.fail({.method = method}, unspecifiedError);
  }
  hardware.clearCalls();
  log.clear();
  subgraph->invalidate();
  EXPECT_EQ(hardware.lifeCalls().size(), 4U);
  EXPECT_THAT(hardware.taps(), IsEmpty());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"[org.example.Player] subgraph torn down (audio restored)"});
}

TEST_F(ProcessTapSubgraphTest, ABlockThatFiresAfterTheReleaseReturnsAtOnceAndTouchesNothing) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  const auto block = hardware.ioBlock(onlyAggregate());
  subgraph.reset();
  float input[2] = {1.0F, 1.0F};
  float output[2] = {0.7F, 0.7F};
  AudioBuffer in{2, sizeof input, input};
  AudioBuffer out{2, sizeof output, output};
  block({.buffers = {&in, 1}}, {.buffers = {&out, 1}});
  EXPECT_EQ(output[0], 0.7F);
  EXPECT_EQ(output[1], 0.7F);
}

TEST_F(ProcessTapSubgraphTest, EverySubgraphHasAnIdentityOfItsOwn) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  const auto first = hardware.tapDescription(onlyTap())->uuid;
  subgraph = make();
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  EXPECT_NE(hardware.tapDescription(onlyTap())->uuid, first);
}

TEST_F(ProcessTapSubgraphTest, DeviceNamesOfAnyKindAreHandedOnAsTheyAre) {
  const std::string uid = "a \"quoted\" %s " + std::string(4096, 'x');
  hardware.addDevice({.uid = uid, .name = uid});
  ASSERT_EQ(subgraph->activate(0.5F, uid), Progress::live);
  EXPECT_EQ(hardware.aggregateDescription(onlyAggregate())->mainDeviceUID, uid);
  EXPECT_NE(log.messages().front().find(uid), std::string::npos);
}

// A failure at each step.

TEST_F(ProcessTapSubgraphTest, WithoutADefaultOutputNothingIsBuilt) {
  hardware.setDefaultOutput(0);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
  expectOnlyErrorLine("[org.example.Player] no system default output");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, ADefaultOutputWithoutAReadableUIDIsNone) {
  hardware.fail({.method = Method::readString, .object = speakers, .selector = audio::deviceUID}, unspecifiedError);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  expectOnlyErrorLine("[org.example.Player] no system default output");
  EXPECT_THAT(hardware.lifeCalls(), IsEmpty());
}

TEST_F(ProcessTapSubgraphTest, AFailedTapLeavesNothingToClean) {
  hardware.fail({.method = Method::createProcessTap}, -50);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::createProcessTap));
  expectOnlyErrorLine("[org.example.Player] AudioHardwareCreateProcessTap failed (-50)");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, ATapWithoutAnIDIsAFailedOne) {
  hardware.fail({.method = Method::createProcessTap}, noErr);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::createProcessTap));
  expectOnlyErrorLine("[org.example.Player] AudioHardwareCreateProcessTap failed (0)");
}

TEST_F(ProcessTapSubgraphTest, AnUnreadableTapFormatDestroysTheTap) {
  hardware.fail({.method = Method::readFormat}, unspecifiedError);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::createProcessTap, Method::destroyProcessTap));
  expectOnlyErrorLine("[org.example.Player] failed to read tap format");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AFailedAggregateDestroysTheTap) {
  hardware.fail({.method = Method::createAggregateDevice}, -66748);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(),
              ElementsAre(Method::createProcessTap, Method::createAggregateDevice, Method::destroyProcessTap));
  expectOnlyErrorLine("[org.example.Player] AudioHardwareCreateAggregateDevice failed (-66748)");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AnAggregateWithoutAnIDIsAFailedOne) {
  hardware.fail({.method = Method::createAggregateDevice}, noErr);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  expectOnlyErrorLine("[org.example.Player] AudioHardwareCreateAggregateDevice failed (0)");
  expectNothingLeft();
}

// The wait for the aggregate.

TEST_F(ProcessTapSubgraphTest, AnAggregateThatNeverComesAliveIsGivenUpAfterTwoSeconds) {
  hardware.setAggregateAliveDelay(1h);
  const auto start = time.monotonicNow();
  EXPECT_EQ(goOnWaiting(subgraph->activate(0.5F, std::nullopt)), Progress::failed);
  EXPECT_EQ(time.monotonicNow() - start, 2s);
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::createProcessTap, Method::createAggregateDevice,
                                                Method::destroyAggregateDevice, Method::destroyProcessTap));
  const auto lines = log.lines();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].level, LogLevel::error);
  EXPECT_THAT(lines[0].message, testing::MatchesRegex("\\[org.example.Player\\] aggregate [0-9]+ never became alive"));
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AnAggregateThatComesAliveLateIsWaitedForWithoutBlocking) {
  hardware.setAggregateAliveDelay(500ms);
  const auto start = time.monotonicNow();
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::waiting);
  EXPECT_EQ(time.threadSleepCount(), 0);
  EXPECT_FALSE(subgraph->isActive());
  EXPECT_EQ(subgraph->proceed(), Progress::waiting);
  EXPECT_EQ(goOnWaiting(Progress::waiting), Progress::live);
  EXPECT_EQ(time.monotonicNow() - start, 500ms);
  EXPECT_TRUE(subgraph->isActive());
  EXPECT_EQ(playThrough(onlyAggregate(), 1.0F), 0.5F);
}

TEST_F(ProcessTapSubgraphTest, WaitingGoesOnThroughReadsThatFail) {
  hardware.fail({.method = Method::readUInt32, .selector = audio::deviceIsAlive}, unspecifiedError, 3);
  EXPECT_EQ(goOnWaiting(subgraph->activate(0.5F, std::nullopt)), Progress::live);
  EXPECT_EQ(time.threadSleepCount(), 3);
}

TEST_F(ProcessTapSubgraphTest, AnAggregateThatIsAliveIsTakenHoweverLateItIsAskedFor) {
  hardware.setAggregateAliveDelay(500ms);
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::waiting);
  time.sleepThread(1h);
  EXPECT_EQ(subgraph->proceed(), Progress::live);
}

TEST_F(ProcessTapSubgraphTest, TheDestructorTearsAHalfBuiltPathDown) {
  hardware.setAggregateAliveDelay(500ms);
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::waiting);
  hardware.clearCalls();
  subgraph.reset();
  EXPECT_THAT(hardware.lifeCalls(), ElementsAre(Method::destroyAggregateDevice, Method::destroyProcessTap));
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(ProcessTapSubgraphTest, ARouteToADeviceThatIsGoneNeverComesAlive) {
  EXPECT_EQ(goOnWaiting(subgraph->activate(0.5F, "gone")), Progress::failed);
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AFailedIOProcTearsEverythingDown) {
  hardware.fail({.method = Method::createIOProc}, -10851);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(),
              ElementsAre(Method::createProcessTap, Method::createAggregateDevice, Method::createIOProc,
                          Method::destroyAggregateDevice, Method::destroyProcessTap));
  expectOnlyErrorLine("[org.example.Player] AudioDeviceCreateIOProcIDWithBlock failed (-10851)");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AnIOProcWithoutAnIDIsAFailedOne) {
  hardware.fail({.method = Method::createIOProc}, noErr);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  expectOnlyErrorLine("[org.example.Player] AudioDeviceCreateIOProcIDWithBlock failed (0)");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AFailedStartStopsAndTearsEverythingDown) {
  hardware.fail({.method = Method::startDevice}, -1);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  EXPECT_THAT(hardware.lifeCalls(),
              ElementsAre(Method::createProcessTap, Method::createAggregateDevice, Method::createIOProc,
                          Method::startDevice, Method::stopDevice, Method::destroyIOProc,
                          Method::destroyAggregateDevice, Method::destroyProcessTap));
  expectOnlyErrorLine("[org.example.Player] AudioDeviceStart failed (-1)");
  expectNothingLeft();
}

TEST_F(ProcessTapSubgraphTest, AfterAFailedActivationInvalidatingDoesNothing) {
  hardware.fail({.method = Method::startDevice}, -1);
  EXPECT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::failed);
  hardware.clearCalls();
  log.clear();
  subgraph->invalidate();
  subgraph.reset();
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_THAT(log.lines(), IsEmpty());
}

// Real threads: what the engine's queue and the audio thread share.

TEST_F(ProcessTapSubgraphTest, GainsMayBeSetAndPeaksReadWhileTheIORuns) {
  ASSERT_EQ(subgraph->activate(0.5F, std::nullopt), Progress::live);
  const auto aggregate = onlyAggregate();
  std::atomic<bool> done{false};
  std::atomic<int> cycles{0};
  std::thread audio([&] {
    while (!done) {
      playThrough(aggregate, 0.5F);
      ++cycles;
    }
  });
  float highest = 0.0F;
  for (int i = 0; cycles < 100 || highest < 0.5F; ++i) {
    subgraph->setTargetGain(static_cast<float>(i % 10) / 10.0F);
    highest = std::max(highest, subgraph->recentInputPeak());
  }
  subgraph->invalidate();
  done = true;
  audio.join();
  EXPECT_EQ(highest, 0.5F);
  EXPECT_EQ(playThrough(aggregate, 0.5F), std::nullopt);
}

}  // namespace
}  // namespace quillmere
