// One process object an application: who it is, what it does, and for how long it is the same.
#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class Processes : public SessionTest {};

TEST_F(Processes, APlayerIsAProcessObjectWithItsPidThatRunsOutput) {
  const auto player = playSignal({"--app-id", "test.player", "--app-name", "The Player"});
  const Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const auto id = machine.process("test.player");
  std::int32_t pid = 0;
  ASSERT_EQ(machine.audio.readInt32(id, {audio::processPID}, pid), noErr);
  EXPECT_EQ(pid, player.pid());
  EXPECT_EQ(machine.number(id, audio::processIsRunningInput), 0U);
  const std::vector<AudioClient> expected{{"test.player", player.pid(), "The Player"}};
  EXPECT_EQ(machine.audio.audioClients(), expected);
}

TEST_F(Processes, APausedPlayerRunsNoOutputAndStays) {
  const auto player = playSignal({"--app-id", "test.player"});
  const Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  player.say("pause");
  EXPECT_TRUE(eventually([&] {
    const auto id = machine.process("test.player");
    return id != 0 && machine.number(id, audio::processIsRunningOutput) == 0;
  }));
}

TEST_F(Processes, AnApplicationThatDropsItsStreamStaysForAsLongAsItsClient) {
  auto player = playSignal({"--app-id", "test.player"});
  const Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  player.say("drop");
  ASSERT_TRUE(
      eventually([&] { return machine.number(machine.process("test.player"), audio::processIsRunningOutput) == 0; }));
  EXPECT_NE(machine.process("test.player"), 0U);
  player.kill();
  EXPECT_TRUE(eventually([&] { return machine.process("test.player") == 0; }));
}

TEST_F(Processes, AnApplicationStartedAgainHasItsOldID) {
  const Machine machine;
  auto first = playSignal({"--app-id", "test.player"});
  const auto id = machine.waitForProcess("test.player");
  first.kill();
  ASSERT_TRUE(eventually([&] { return machine.process("test.player") == 0; }));
  const auto second = playSignal({"--app-id", "test.player"});
  EXPECT_EQ(machine.waitForProcess("test.player"), id);
}

TEST_F(Processes, SeveralClientsOfOneApplicationAreOneObject) {
  const auto first = playSignal({"--app-id", "test.player"});
  const Machine machine;
  ASSERT_NE(machine.waitForProcess("test.player"), 0U);
  const auto second = playSignal({"--app-id", "test.player"});
  const auto other = playSignal({"--app-id", "test.other"});
  ASSERT_NE(machine.waitForProcess("test.other"), 0U);
  EXPECT_EQ(machine.list(audio::processObjectList).size(), 2U);
}

TEST_F(Processes, TwoApplicationsOfOneNameAreTwoObjects) {
  const auto first = playSignal({"--app-id", "test.one", "--app-name", "Music"});
  const auto second = playSignal({"--app-id", "test.two", "--app-name", "Music"});
  const Machine machine;
  EXPECT_NE(machine.waitForProcess("test.one"), machine.waitForProcess("test.two"));
}

TEST_F(Processes, ARecorderOfAMicrophoneRunsInput) {
  const auto recorder =
      playSignal({"--app-id", "test.recorder", "--record", "--prop", "target.object=quillmere_test_microphone"});
  const Machine machine;
  EXPECT_TRUE(eventually([&] {
    const auto id = machine.process("test.recorder");
    return id != 0 && machine.number(id, audio::processIsRunningInput) == 1;
  }));
}

TEST_F(Processes, ARecorderOfAnOutputsMonitorDoesNotRunInput) {
  const auto player = playSignal({"--app-id", "test.player"});
  const auto recorder = playSignal({"--app-id", "test.recorder", "--record", "--prop", "stream.capture.sink=true"});
  const Machine machine;
  ASSERT_NE(machine.waitForProcess("test.recorder"), 0U);
  ASSERT_TRUE(eventually([] { return session::areLinked(session::sinkA, "test.recorder-1"); }));
  ASSERT_TRUE(machine.waitForSound("test.player"));
  EXPECT_EQ(machine.number(machine.process("test.recorder"), audio::processIsRunningInput), 0U);
}

TEST_F(Processes, ALevelMeterIsNoApplication) {
  const auto meter = playSignal({"--app-id", "test.meter", "--record", "--prop", "stream.monitor=true"});
  const auto player = playSignal({"--app-id", "test.player"});
  const Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.player"));
  EXPECT_EQ(machine.process("test.meter"), 0U);
}

TEST_F(Processes, OurOwnStreamsDoNotCount) {
  const auto ours = playSignal({"--app-id", "test.ours", "--prop", "node.name=app.quillmere.tone"});
  const auto player = playSignal({"--app-id", "test.player"});
  const Machine machine;
  const MonitorRecorder recorder(session::sinkA);
  ASSERT_TRUE(machine.waitForSound("test.player"));
  EXPECT_EQ(machine.list(audio::processObjectList).size(), 1U);
}

TEST_F(Processes, AClientOfThePulseServerGoesByItsOwnWord) {
  ChildProcess player(
      {"paplay", "--raw", "--client-name=Pulse Player", "--property=application.id=test.pulse", "/dev/zero"});
  const Machine machine;
  ASSERT_TRUE(machine.waitForSound("test.pulse"));
  std::int32_t pid = 0;
  ASSERT_EQ(machine.audio.readInt32(machine.process("test.pulse"), {audio::processPID}, pid), noErr);
  EXPECT_EQ(pid, player.pid());
}

TEST_F(Processes, AClientWithoutAnIdGoesByItsBinary) {
  const ChildProcess player({"pw-cat", "--playback", "--raw", "/dev/zero"});
  const auto signal = playSignal({"--app-id", "", "--app-name", ""});
  const Machine machine;
  EXPECT_NE(machine.waitForProcess("signal_player"), 0U);
}

TEST_F(Processes, AnAbsurdProcessIdIsZeroAndLogged) {
  ChildProcess player(
      {"paplay", "--raw", "--property=application.id=test.pulse", "--property=application.process.id=-7", "/dev/zero"});
  Machine machine;
  ASSERT_NE(machine.waitForProcess("test.pulse"), 0U);
  std::int32_t pid = 1;
  ASSERT_EQ(machine.audio.readInt32(machine.process("test.pulse"), {audio::processPID}, pid), noErr);
  EXPECT_EQ(pid, 0);
  EXPECT_TRUE(machine.log.contains("process id \"-7\"")) << machine.log.all();
}

}  // namespace
}  // namespace quillmere::test
