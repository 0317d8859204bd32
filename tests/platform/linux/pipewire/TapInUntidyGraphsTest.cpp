// Taps where the graph isn't tidy: streams of several layouts, other mixers, devices of a stream's own, filters,
// devices that are another's alone, other rates.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/ChildProcess.h"
#include "support/Level.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/ParameterSetter.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class TapInUntidyGraphs : public SessionTest {};

/// The level that a device settles at.
float settledLevel(const MonitorRecorder& monitor) {
  float level = -1.0F;
  eventually([&] {
    const float before = std::exchange(level, monitor.nextPeak());
    return level > 0.05F && std::fabs(level - before) < 1e-4F;
  });
  return level;
}

::testing::AssertionResult settlesAt(const MonitorRecorder& monitor, float level) {
  float peak = -1.0F;
  if (eventually([&] { return std::fabs((peak = monitor.nextPeak()) - level) <= 0.005F * level + 1e-5F; })) {
    return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "level " << peak << " instead of " << level;
}

/// Id and serial of a node by its name, as another mixer would look it up.
std::string numberOf(const std::string& name, const std::string& pattern) {
  return run({"sh", "-c",
              "pw-cli ls Node | awk -v want='\"" + name + "\"' '" + pattern +
                  " /node.name/ && $3==want {gsub(/[\",]/, \"\", s); printf \"%s\", s}'"});
}
std::string idOf(const std::string& name) { return numberOf(name, "$1 == \"id\" {s=$2}"); }
std::string serialOf(const std::string& name) { return numberOf(name, "/object.serial/ {s=$3}"); }

/// Until the level there is what it is to be: the pulse server acknowledges a move now and then without making it, tap
/// or no tap, and then none of those that follow. So the mixers that write the metadata themselves take turns with it.
::testing::AssertionResult playsAfterAMove(const std::string& stream, const std::string& device,
                                           const MonitorRecorder& monitor, float gain) {
  for (int attempt = 0; attempt < 5; ++attempt) {
    if (attempt % 2 == 0) {
      run({"pactl", "move-sink-input", session::sinkInputOf(stream), device});
    } else {
      run({"pw-metadata", idOf(stream), "target.object", serialOf(device), "Spa:Id"});
    }
    if (levelIs(monitor, gain)) return ::testing::AssertionSuccess();
  }
  return levelIs(monitor, gain);
}

// --- layouts ---------------------------------------------------------------------------------------------------------

struct Layouts {
  std::string name;
  std::string first;
  std::string second;
};

class TapOfTwoLayouts : public SessionTest, public ::testing::WithParamInterface<Layouts> {};

TEST_P(TapOfTwoLayouts, HearsBothStreamsAtTheGain) {
  const auto player = playSignal({"--app-id", "test.player", "--layout", GetParam().first});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const float first = settledLevel(monitor);
  player.say("add " + GetParam().second);
  float both = first;
  ASSERT_TRUE(eventually([&] { return (both = settledLevel(monitor)) > first + 0.2F; })) << both;

  TapUnderTest tap(machine, "test.player", 0.5F);
  EXPECT_TRUE(settlesAt(monitor, 0.5F * both)) << machine.log.all();
  tap.end();
  EXPECT_TRUE(settlesAt(monitor, both));
}

TEST_P(TapOfTwoLayouts, HearsTheSecondThatStartsLaterAndTheFirstGoesOn) {
  const auto player = playSignal({"--app-id", "test.player", "--layout", GetParam().first});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const float first = settledLevel(monitor);
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(settlesAt(monitor, 0.5F * first));

  player.say("add " + GetParam().second);
  float both = 0.0F;
  EXPECT_TRUE(eventually([&] { return (both = settledLevel(monitor)) > 0.5F * first + 0.1F; })) << both;
  player.say("drop");
  EXPECT_TRUE(settlesAt(monitor, 0.5F * first));
  player.say("add " + GetParam().second);
  EXPECT_TRUE(settlesAt(monitor, both));
}

TEST_P(TapOfTwoLayouts, HearsThemOnADeviceOfOneChannelAndBack) {
  const auto player = playSignal({"--app-id", "test.player", "--layout", GetParam().first});
  player.say("add " + GetParam().second);
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  session::addSink("test_headset", "audio.position=[FL FR]");
  const MonitorRecorder monitorA(session::sinkA);
  TapUnderTest tap(machine, "test.player", 0.5F, "test_headset");
  float stereo = 0.0F;
  {
    const MonitorRecorder headset("test_headset");
    stereo = settledLevel(headset);
    ASSERT_GT(stereo, 0.3F);
  }
  // A call begins: the headset goes, and comes back with one channel; when it ends, with two.
  for (const auto* channels : {"MONO", "FL FR"}) {
    session::removeSink("test_headset");
    EXPECT_TRUE(eventually([&] { return monitorA.nextPeak() > 0.3F; })) << channels;
    session::addSink("test_headset", std::string("audio.position=[") + channels + "]");
    const MonitorRecorder headset("test_headset");
    const float level = settledLevel(headset);
    EXPECT_GT(level, 0.3F) << channels << machine.log.all();
    if (std::string(channels) == "FL FR") {
      EXPECT_NEAR(level, stereo, 0.005F);
    }
    tap.setGain(0.25F);
    EXPECT_TRUE(settlesAt(headset, 0.5F * level)) << channels;
    tap.setGain(0.5F);
    EXPECT_TRUE(settlesAt(headset, level)) << channels;
  }
  tap.end();
  session::removeSink("test_headset");
}

INSTANTIATE_TEST_SUITE_P(Pairs, TapOfTwoLayouts,
                         ::testing::Values(Layouts{"StereoThenMono", "FL,FR", "MONO"},
                                           Layouts{"MonoThenStereo", "MONO", "FL,FR"},
                                           Layouts{"StereoThenSurround", "FL,FR", "FL,FR,FC,LFE,RL,RR"},
                                           Layouts{"SurroundThenStereo", "FL,FR,FC,LFE,RL,RR", "FL,FR"},
                                           Layouts{"MonoThenEightChannels", "MONO", "FL,FR,FC,LFE,RL,RR,SL,SR"}),
                         [](const auto& pair) { return pair.param.name; });

// --- other mixers ----------------------------------------------------------------------------------------------------

TEST_F(TapInUntidyGraphs, AStreamThatAnotherMixerMovesPlaysThereAtItsGain) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(levelIs(monitorA, 0.25F));
  EXPECT_TRUE(playsAfterAMove("test.player-1", session::sinkB, monitorB, 0.25F)) << machine.log.all();
  EXPECT_TRUE(levelIs(monitorA, 0.0F));
  tap.setGain(0.5F);
  EXPECT_TRUE(levelIs(monitorB, 0.5F));
  tap.setGain(0.0F);
  EXPECT_TRUE(levelIs(monitorB, 0.0F));
  tap.end();
  EXPECT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  EXPECT_TRUE(levelIs(monitorB, 1.0F));
  EXPECT_TRUE(session::areLinked("test.player-1", session::sinkB));
}

TEST_F(TapInUntidyGraphs, OnlyTheStreamThatAnotherMixerMovesGoes) {
  const auto player = playSignal({"--app-id", "test.player", "--streams", "2"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(levelIs(monitorA, 2.0F));
  TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(levelIs(monitorA, 0.5F));
  EXPECT_TRUE(playsAfterAMove("test.player-2", session::sinkB, monitorB, 0.25F)) << machine.log.all();
  EXPECT_TRUE(levelIs(monitorA, 0.25F));
  tap.setGain(0.5F);
  EXPECT_TRUE(levelIs(monitorA, 0.5F));
  EXPECT_TRUE(levelIs(monitorB, 0.5F));
  // And back to the others.
  EXPECT_TRUE(playsAfterAMove("test.player-2", session::sinkA, monitorA, 1.0F)) << machine.log.all();
  EXPECT_TRUE(levelIs(monitorB, 0.0F));
  EXPECT_TRUE(eventually([] {
    const auto taps = session::ourTaps();
    return std::none_of(taps.begin(), taps.end(),
                        [](const auto& each) { return session::areLinked(each, session::sinkB); });
  })) << "an output that nobody plays on is left";
  tap.end();
  EXPECT_TRUE(levelIs(monitorA, 2.0F));
}

TEST_F(TapInUntidyGraphs, AStreamThatIsMovedIsNeverHeardAtItsFullLevelForLong) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.1F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  const auto from = monitorB.size();
  ASSERT_TRUE(playsAfterAMove("test.player-1", session::sinkB, monitorB, 0.1F)) << machine.log.all();
  const auto samples = monitorB.samples(from);
  const auto loud = std::count_if(samples.begin(), samples.end(), [](float sample) { return sample > 0.06F; });
  // The session manager has linked it there before anyone can say otherwise: a few cycles.
  EXPECT_LT(loud, 48 * 150) << loud / 48 << " ms";
}

TEST_F(TapInUntidyGraphs, ARoutedStreamThatAnotherMixerMovesToTheDefaultGoesThere) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F, session::sinkB);
  ASSERT_TRUE(levelIs(monitorB, 0.5F));
  EXPECT_TRUE(playsAfterAMove("test.player-1", session::sinkA, monitorA, 0.5F)) << machine.log.all();
  EXPECT_TRUE(levelIs(monitorB, 0.0F));
}

// --- a device of the stream's own -----------------------------------------------------------------------------------

TEST_F(TapInUntidyGraphs, AnUnroutedApplicationStaysOnTheDeviceThatItNamesItself) {
  const auto player = playSignal({"--app-id", "test.player", "--prop", "target.object=" + session::sinkB});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(levelIs(monitorB, 1.0F));
  TapUnderTest tap(machine, "test.player", 0.5F);
  EXPECT_TRUE(levelIs(monitorB, 0.5F)) << machine.log.all();
  EXPECT_TRUE(levelIs(monitorA, 0.0F));
  tap.setGain(0.1F);
  EXPECT_TRUE(levelIs(monitorB, 0.1F));
  tap.end();
  EXPECT_TRUE(levelIs(monitorB, 1.0F));
}

TEST_F(TapInUntidyGraphs, AnUnroutedApplicationStaysWhereTheUserHadMovedIt) {
  const auto player = playSignal({"--app-id", "test.player"});
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(playsAfterAMove("test.player-1", session::sinkB, monitorB, 1.0F));
  // From here: while clients come and go the daemon may keep a change of the metadata to itself for a moment.
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  EXPECT_TRUE(levelIs(monitorB, 0.5F)) << machine.log.all();
}

TEST_F(TapInUntidyGraphs, AnUnroutedApplicationWhoseDeviceGoesPlaysWhereTheSessionManagerWouldPlayIt) {
  session::addSink("test_own");
  const auto player = playSignal({"--app-id", "test.player", "--prop", "target.object=test_own"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  {
    const MonitorRecorder own("test_own");
    ASSERT_TRUE(levelIs(own, 0.5F));
  }
  session::removeSink("test_own");
  EXPECT_TRUE(levelIs(monitorA, 0.5F)) << machine.log.all();
  session::addSink("test_own");
  const MonitorRecorder own("test_own");
  EXPECT_TRUE(levelIs(own, 0.5F)) << machine.log.all();
}

// --- others that wait for us
// ---------------------------------------------------------------------------------------------

// The daemon reads nothing more from a client that has set a parameter of our node until we have answered. Where it
// read nothing from us either, because we waited for the session manager, and that client was the session manager, both
// would wait for ever and nobody's streams would be linked any more.
TEST_F(TapInUntidyGraphs, AClientThatSetsAParameterOfATapsNodeIsAnsweredWhileTheSessionManagerDoesNotAnswerUs) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  ParameterSetter other(static_cast<std::uint32_t>(std::stoul(idOf(session::ourTaps().at(0)))));
  const session::HeldDaemon held;
  // By the new client we know that the metadata has to be told again: half a second later, two seconds at the latest.
  const auto begin = nowMillis();
  while (nowMillis() - begin < 3000) ASSERT_TRUE(other.isAnswered());
}

// --- a device that is another's alone
// ---------------------------------------------------------------------------------

TEST_F(TapInUntidyGraphs, ATapWaitsForADeviceThatAnotherClientHoldsAlone) {
  auto holder = std::make_unique<ChildProcess>(playSignal(
      {"--app-id", "test.holder", "--prop", "target.object=" + session::sinkB, "--prop", "node.exclusive=true"}));
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.holder"));
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const MonitorRecorder monitorB(session::sinkB, "1024/48000", MonitorRecorder::Linked::byHand);
  const MonitorRecorder monitorA(session::sinkA);
  ASSERT_TRUE(levelIs(monitorB, 1.0F));
  TapUnderTest tap(machine, "test.player", 0.5F, session::sinkB);
  ASSERT_TRUE(eventually([&] { return machine.log.contains("waits for its output"); })) << machine.log.all();
  ASSERT_TRUE(levelIs(monitorA, 0.0F));
  const auto taps = session::ourTaps();
  EXPECT_TRUE(levelIs(monitorB, 1.0F)) << "the other has it alone";
  EXPECT_EQ(session::ourTaps(), taps) << "nothing is made again and again";
  const auto log = machine.log.all();
  EXPECT_EQ(log.find("waits for its output"), log.rfind("waits for its output")) << log;
  holder.reset();
  EXPECT_TRUE(levelIs(monitorB, 0.5F)) << machine.log.all();
}

TEST_F(TapInUntidyGraphs, ADeviceThatATapPlaysOnIsNotGivenToAnotherAlone) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F, session::sinkB);
  ASSERT_TRUE(levelIs(monitorB, 0.5F));
  const auto holder = playSignal(
      {"--app-id", "test.holder", "--prop", "target.object=" + session::sinkB, "--prop", "node.exclusive=true"});
  ASSERT_NE(machine.waitForProcess("test.holder"), 0U);
  // As beside any stream that plays there: the session manager refuses the one who came later.
  EXPECT_TRUE(levelIs(monitorB, 0.5F));
  EXPECT_FALSE(session::areLinked("test.holder-1", session::sinkB));
}

// --- filters ---------------------------------------------------------------------------------------------------------

/// A filter as a loopback with a volume of its own, which shows whether sound went through it.
ChildProcess startFilter(const std::string& name, const std::string& more) {
  ChildProcess filter(
      {"pw-loopback", "--capture-props", "media.class=Audio/Sink node.name=" + name + " audio.position=[FL FR] " + more,
       "--playback-props",
       "node.name=" + name + ".output target.object=" + session::sinkA + " node.passive=true audio.position=[FL FR]"});
  EXPECT_TRUE(eventually([&] { return !serialOf(name).empty(); }));
  return filter;
}

TEST_F(TapInUntidyGraphs, AFilterThatIsTheDefaultOutputIsPlayedThrough) {
  const auto filter = startFilter("test_filter", "");
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(eventually([&] { return machine.device("test_filter") != 0; }));
  machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, machine.device("test_filter"));
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(eventually([] { return session::areLinked("test.player-1", "test_filter"); }));
  ASSERT_TRUE(eventually([&] {
    machine.audio.writeFloat32(machine.device("test_filter"), {audio::volumeScalar, audio::scopeOutput}, 0.5F);
    return std::fabs(monitor.nextPeak() - 0.125F * signalLevel) < 0.001F;
  })) << monitor.nextPeak();
  TapUnderTest tap(machine, "test.player", 0.5F);
  EXPECT_TRUE(settlesAt(monitor, 0.5F * 0.125F * signalLevel)) << machine.log.all();
  tap.setGain(0.0F);
  EXPECT_TRUE(settlesAt(monitor, 0.0F));
  tap.end();
  EXPECT_TRUE(settlesAt(monitor, 0.125F * signalLevel));
}

TEST_F(TapInUntidyGraphs, AFilterThatTheSessionManagerPutsBeforeADeviceIsPlayedThrough) {
  if (run({"wireplumber", "--version"}).find(" 0.4") != std::string::npos) {
    GTEST_SKIP() << "WirePlumber 0.4 puts no filters before devices";
  }
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(levelIs(monitor, 0.5F));
  {
    const auto filter = startFilter("test_filter", "filter.smart=true filter.smart.name=test_filter");
    ASSERT_TRUE(eventually([&] {
      machine.audio.writeFloat32(machine.device("test_filter"), {audio::volumeScalar, audio::scopeOutput}, 0.5F);
      return std::fabs(monitor.nextPeak() - 0.5F * 0.125F * signalLevel) < 0.001F;
    })) << monitor.nextPeak()
        << machine.log.all();
    tap.end();
    EXPECT_TRUE(settlesAt(monitor, 0.125F * signalLevel));
    TapUnderTest second(machine, "test.player", 0.25F);
    EXPECT_TRUE(settlesAt(monitor, 0.25F * 0.125F * signalLevel)) << machine.log.all();
    second.end();
  }
  EXPECT_TRUE(levelIs(monitor, 1.0F)) << "and without it, when it has gone";
}

// --- rates and cycles ------------------------------------------------------------------------------------------------

void setGraph(const std::string& key, int value) {
  run({"pw-metadata", "-n", "settings", "0", key, std::to_string(value)});
}

TEST_F(TapInUntidyGraphs, ALevelHoldsThroughChangesOfTheGraphsQuantum) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(levelIs(monitor, 0.5F));
  for (const int quantum : {256, 2048, 512, 1024}) {
    setGraph("clock.force-quantum", quantum);
    EXPECT_TRUE(levelIs(monitor, 0.5F)) << quantum;
  }
}

TEST_F(TapInUntidyGraphs, AfterAChangeOfRateTheTapSaysSoAndTheLevelHolds) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(levelIs(monitor, 0.5F));
  for (const int rate : {96000, 44100, 48000}) {
    setGraph("clock.force-rate", rate);
    EXPECT_TRUE(eventually([&] { return tap.rate() == rate; })) << tap.rate();
    EXPECT_TRUE(levelIs(monitor, 0.5F)) << rate;
  }
}

}  // namespace
}  // namespace quillmere::test
