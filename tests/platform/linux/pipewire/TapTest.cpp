// Taps on real daemons: what is set is what is heard at the device's monitor, and nothing else.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "support/ChildProcess.h"
#include "support/Level.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class Tap : public SessionTest {};

std::string storedByTheSessionManager() {
  std::ostringstream all;
  const auto folder = std::filesystem::path(std::getenv("XDG_STATE_HOME")) / "wireplumber";
  if (!std::filesystem::exists(folder)) return {};
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    all << std::ifstream(entry.path()).rdbuf();
  }
  return all.str();
}

/// It writes its files a second after the last change: what another stream has had stored since shows that it has.
bool hasStoredAllUntilNow(const std::string& marker) {
  const auto player = playSignal({"--app-id", marker});
  std::string stream;
  if (!eventually([&] { return !(stream = session::sinkInputOf(marker + "-1")).empty(); })) return false;
  // Once: every change has it wait for another second.
  run({"pactl", "set-sink-input-volume", stream, "80%"});
  return eventually([&] { return storedByTheSessionManager().find(marker) != std::string::npos; });
}

std::string targetOf(const std::string& stream) {
  const auto dump = run({"sh", "-c",
                         "pw-metadata | sed -n \"s/.*id:$(pw-cli ls Node | awk '/^\\tid/{id=$2} /node.name = \\\"" +
                             stream + "\\\"/{print id}' | tr -d ,) key:'target.object' value:'\\([^']*\\)'.*/\\1/p\""});
  return dump;
}

TEST_F(Tap, GainIsHeardAtTheDeviceToATwentiethOfADecibel) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(levelIs(monitor, 1.0F));
  TapUnderTest tap(machine, "test.player", 0.5F);
  EXPECT_TRUE(levelIs(monitor, 0.5F)) << machine.log.all();
  tap.setGain(0.0F);
  EXPECT_TRUE(levelIs(monitor, 0.0F));
  tap.setGain(0.25F);
  EXPECT_TRUE(levelIs(monitor, 0.25F));
  tap.end();
  EXPECT_TRUE(levelIs(monitor, 1.0F));
}

TEST_F(Tap, OnlyTheTappedApplicationIsChanged) {
  const auto player = playSignal({"--app-id", "test.player"});
  const auto other = playSignal({"--app-id", "test.other"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(machine.waitForSound("test.other"));
  TapUnderTest tap(machine, "test.player", 0.0F);
  EXPECT_TRUE(levelIs(monitor, 1.0F));
}

TEST_F(Tap, ARoutePlaysOnItsDeviceOnly) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 1.0F, session::sinkB);
  EXPECT_TRUE(levelIs(monitorB, 1.0F));
  EXPECT_TRUE(levelIs(monitorA, 0.0F));
  tap.end();
  EXPECT_TRUE(levelIs(monitorA, 1.0F));
  EXPECT_TRUE(levelIs(monitorB, 0.0F));
}

TEST_F(Tap, ARoutedDeviceThatGoesLetsTheSoundFallToTheDefaultUntilItReturns) {
  session::addSink("test_extra");
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F, "test_extra");
  ASSERT_TRUE(levelIs(monitorA, 0.0F));
  session::removeSink("test_extra");
  EXPECT_TRUE(levelIs(monitorA, 0.5F));
  session::addSink("test_extra");
  EXPECT_TRUE(levelIs(monitorA, 0.0F));
}

/// A tap on a device with these channels halves what the device is played without one, and silences it.
void expectGainOnDeviceWith(const std::string& channels) {
  session::addSink("test_channels", "audio.position=[" + channels + "]");
  const auto player = playSignal({"--app-id", "test.player", "--prop", "target.object=test_channels"});
  Machine machine;
  const MonitorRecorder monitor("test_channels");
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(eventually([&] { return monitor.nextPeak() > 0.1F; }));
  float untouched = 0.0F;
  {
    TapUnderTest tap(machine, "test.player", 1.0F, "test_channels");
    ASSERT_TRUE(eventually([&] { return tap.calls() > 10; }));
    // What a converter puts into more channels than two is not heard through a tap.
    EXPECT_TRUE(eventually([&] { return (untouched = monitor.nextPeak()) > 0.3F; })) << untouched;
    tap.setGain(0.5F);
    EXPECT_TRUE(eventually([&] { return std::fabs(monitor.nextPeak() - 0.5F * untouched) < 0.005F * untouched; }))
        << monitor.nextPeak() << " of " << untouched;
    tap.setGain(0.0F);
    EXPECT_TRUE(eventually([&] { return monitor.nextPeak() < 1e-5F; })) << monitor.nextPeak();
  }
  EXPECT_TRUE(eventually([&] { return monitor.nextPeak() > 0.3F; }));
  session::removeSink("test_channels");
}

TEST_F(Tap, ADeviceOfOneChannelIsPlayedAtTheGain) { expectGainOnDeviceWith("MONO"); }

TEST_F(Tap, ASurroundDeviceIsPlayedAtTheGain) { expectGainOnDeviceWith("FL FR FC LFE RL RR"); }

TEST_F(Tap, ADeviceWithoutPositionsIsPlayedAtTheGain) { expectGainOnDeviceWith("AUX0 AUX1 AUX2 AUX3"); }

TEST_F(Tap, AnApplicationWithTheChannelsOfItsOldDeviceIsHeardOnTheNewOne) {
  session::addSink("test_mono", "audio.position=[MONO]");
  const auto player = playSignal({"--app-id", "test.player", "--prop", "target.object=test_mono"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  const MonitorRecorder mono("test_mono");
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(eventually([&] { return mono.nextPeak() > 0.1F; }));
  {
    const TapUnderTest tap(machine, "test.player", 0.5F, session::sinkA);
    EXPECT_TRUE(levelIs(monitor, 0.5F));
  }
  EXPECT_TRUE(levelIs(monitor, 0.0F));
  EXPECT_TRUE(eventually([&] { return mono.nextPeak() > 0.1F; }));
  session::removeSink("test_mono");
}

TEST_F(Tap, AStereoApplicationIsHeardOnASurroundDevice) {
  session::addSink("test_surround", "audio.position=[FL FR FC LFE RL RR]");
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  const MonitorRecorder surround("test_surround");
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(levelIs(monitor, 1.0F));
  {
    const TapUnderTest tap(machine, "test.player", 0.5F, "test_surround");
    EXPECT_TRUE(levelIs(monitor, 0.0F));
    EXPECT_TRUE(eventually([&] { return surround.nextPeak() > 0.1F; })) << machine.log.all();
    EXPECT_FALSE(machine.log.contains("cut off")) << machine.log.all();
  }
  EXPECT_TRUE(levelIs(monitor, 1.0F));
  session::removeSink("test_surround");
}

TEST_F(Tap, WithoutARouteTheSoundFollowsTheDefault) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, machine.device(session::sinkB));
  EXPECT_TRUE(levelIs(monitorB, 0.5F));
}

TEST_F(Tap, AStreamThatStartsLaterIsCaughtToo) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(levelIs(monitor, 0.5F));
  player.say("add");
  // Two constants of one half at a gain of one half.
  EXPECT_TRUE(levelIs(monitor, 1.0F));
}

TEST_F(Tap, ASecondProcessOfTheApplicationIsCaughtToo) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(levelIs(monitor, 0.25F));
  const auto helper = playSignal({"--app-id", "test.player"});
  EXPECT_TRUE(levelIs(monitor, 0.5F));
}

TEST_F(Tap, AnApplicationStartedAgainIsStillTapped) {
  auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(levelIs(monitor, 0.5F));
  player.kill();
  ASSERT_TRUE(levelIs(monitor, 0.0F));
  const auto again = playSignal({"--app-id", "test.player"});
  EXPECT_TRUE(levelIs(monitor, 0.5F));
}

TEST_F(Tap, APausedPlayerIsMovedSilentlyAndPlaysAtItsGainFromTheFirstSample) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  player.say("pause");
  ASSERT_TRUE(
      eventually([&] { return machine.number(machine.process("test.player"), audio::processIsRunningOutput) == 0; }));
  const MonitorRecorder monitor(session::sinkA);
  TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(eventually([] {
    const auto taps = session::ourTaps();
    return !taps.empty() && session::areLinked("test.player-1", taps.front());
  }));
  const auto from = monitor.size();
  player.say("play");
  ASSERT_TRUE(eventually([&] { return tap.calls() > 10; }));
  const auto samples = monitor.samples(from);
  EXPECT_NEAR(*std::max_element(samples.begin(), samples.end()), 0.125F, 1e-4F);
}

TEST_F(Tap, NoCycleRunsWhileTheTappedPlayerIsPaused) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 20; }));
  player.say("pause");
  // A quarter of a second in which nothing is called, more than ten cycles long: that nothing happens has no event.
  EXPECT_TRUE(eventually([&] {
    const auto before = tap.calls();
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    return tap.calls() == before;
  }));
  player.say("play");
  const auto before = tap.calls();
  EXPECT_TRUE(eventually([&] { return tap.calls() > before; }));
}

TEST_F(Tap, TheDeviceRestsThoughThePlayerPausesAsSoonAsItIsTapped) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const TapUnderTest tap(machine, "test.player", 0.25F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 0; }));
  player.say("pause");
  ASSERT_NE(session::stateOf(session::sinkA), "");
  EXPECT_TRUE(eventually([] { return session::stateOf(session::sinkA) != "running"; }));
}

TEST_F(Tap, TheHandoverGlidesFromUnityAndBack) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  ASSERT_TRUE(levelIs(monitor, 1.0F));
  // On a busy machine the daemon may miss a whole cycle in the middle of a glide, which no gain can mend.
  float step = 1.0F;
  for (int attempt = 0; attempt < 5 && step > glideStep; ++attempt) {
    const auto from = monitor.size();
    TapUnderTest tap(machine, "test.player", 0.1F);
    ASSERT_TRUE(levelIs(monitor, 0.1F));
    tap.end();
    ASSERT_TRUE(levelIs(monitor, 1.0F));
    ASSERT_TRUE(eventually([] { return session::ourNodes().empty(); }));
    step = largestStep(monitor.samples(from));
  }
  EXPECT_LE(step, glideStep);
}

TEST_F(Tap, ATapThatIsRebuiltAtOnceTakesUpTheOldStreamsWithoutAStep) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  auto tap = std::make_unique<TapUnderTest>(machine, "test.player", 0.2F);
  ASSERT_TRUE(levelIs(monitor, 0.2F));
  const auto nodes = session::ourTaps();
  float step = 1.0F;
  for (int attempt = 0; attempt < 5 && step > glideStep; ++attempt) {
    const auto from = monitor.size();
    for (int i = 0; i < 5; ++i) {
      tap->end();
      tap = std::make_unique<TapUnderTest>(machine, "test.player", 0.2F);
      ASSERT_TRUE(eventually([&] { return tap->calls() > 2; }));
    }
    ASSERT_TRUE(levelIs(monitor, 0.2F));
    const auto samples = monitor.samples(from);
    step = largestStep(samples);
  }
  EXPECT_EQ(session::ourTaps(), nodes);
  EXPECT_LE(step, glideStep);
}

TEST_F(Tap, AnotherRouteMovesStraightFromTheOldTapToTheNew) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  const MonitorRecorder monitorA(session::sinkA);
  const MonitorRecorder monitorB(session::sinkB);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest first(machine, "test.player", 0.25F);
  ASSERT_TRUE(levelIs(monitorA, 0.25F));
  const auto from = monitorA.size();
  first.end();
  TapUnderTest second(machine, "test.player", 0.25F, session::sinkB);
  EXPECT_TRUE(levelIs(monitorB, 0.25F));
  EXPECT_TRUE(levelIs(monitorA, 0.0F));
  // On the old device it never grew loud on its way out.
  const auto samples = monitorA.samples(from);
  EXPECT_LT(*std::max_element(samples.begin(), samples.end()), 0.5F * 0.5F);
  EXPECT_TRUE(eventually([] { return session::ourTaps().size() == 1; }));
}

TEST_F(Tap, NothingOfOursStaysInTheGraphOnceEverythingIsReleased) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  EXPECT_TRUE(session::ourNodes().empty());
  {
    TapUnderTest tap(machine, "test.player", 0.5F);
    ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
    EXPECT_EQ(session::ourTaps().size(), 1U);
  }
  EXPECT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  EXPECT_EQ(targetOf("test.player-1"), "");
}

TEST_F(Tap, TheSessionManagerStoresNothingOfOurs) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  ASSERT_TRUE(hasStoredAllUntilNow("test.marker.one"));
  EXPECT_EQ(storedByTheSessionManager().find("app.quillmere"), std::string::npos) << storedByTheSessionManager();
  tap.end();
  ASSERT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  ASSERT_TRUE(hasStoredAllUntilNow("test.marker.two"));
  EXPECT_EQ(storedByTheSessionManager().find("app.quillmere"), std::string::npos) << storedByTheSessionManager();
}

TEST_F(Tap, AStreamThatMustNotBeMovedStaysAndIsLogged) {
  const auto player = playSignal({"--app-id", "test.player", "--prop", "node.dont-reconnect=true"});
  Machine machine;
  const MonitorRecorder monitor(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  TapUnderTest tap(machine, "test.player", 0.25F);
  EXPECT_TRUE(eventually([&] { return machine.log.contains("not to be moved"); }));
  EXPECT_TRUE(levelIs(monitor, 1.0F));
  tap.end();
  EXPECT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  EXPECT_TRUE(levelIs(monitor, 1.0F));
}

TEST_F(Tap, AnExclusiveOrEmptyListIsRefused) {
  Machine machine;
  AudioObjectID tap = 0;
  TapDescription description;
  EXPECT_NE(machine.audio.createProcessTap(description, tap), noErr);
  description.isExclusive = false;
  EXPECT_NE(machine.audio.createProcessTap(description, tap), noErr);
  description.processes = {4711};
  EXPECT_NE(machine.audio.createProcessTap(description, tap), noErr);
  EXPECT_EQ(tap, 0U);
}

TEST_F(Tap, FormatIsStereoFloatAtTheGraphsRate) {
  const auto player = playSignal({"--app-id", "test.player"});
  Machine machine;
  TapDescription description;
  description.processes = {machine.waitForProcess("test.player")};
  description.isExclusive = false;
  AudioObjectID tap = 0;
  ASSERT_EQ(machine.audio.createProcessTap(description, tap), noErr);
  AudioStreamBasicDescription format;
  ASSERT_EQ(machine.audio.readFormat(tap, {audio::tapFormat}, format), noErr);
  EXPECT_EQ(format.sampleRate, 48000.0);
  EXPECT_EQ(format.channelsPerFrame, 2U);
  EXPECT_EQ(format.bytesPerFrame, 8U);
  EXPECT_EQ(machine.audio.destroyProcessTap(tap), noErr);
  EXPECT_EQ(machine.audio.readFormat(tap, {audio::tapFormat}, format), badObjectError);
}

}  // namespace
}  // namespace quillmere::test
