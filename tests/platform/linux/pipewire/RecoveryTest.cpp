// Kills and restarts: every application is heard again by itself, and what was live comes back.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "support/ChildProcess.h"
#include "support/Machine.h"
#include "support/MetadataKeeper.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class Recovery : public SessionTest {};

bool isHeardAt(const MonitorRecorder& monitor, float level, std::chrono::milliseconds within) {
  return eventually([&] { return std::fabs(monitor.nextPeak(512) - level) < 0.01F; }, within);
}

TEST_F(Recovery, AfterAKillThePlayerIsBackOnItsOwnOutputByItself) {
  const auto player = playSignal({"--app-id", "test.player"});
  const MonitorRecorder monitor(session::sinkA);
  ChildProcess holder({QUILLMERE_PIPEWIRE_PROBE, "hold", "test.player", "0.5", session::sinkB});
  ASSERT_TRUE(isHeardAt(monitor, 0.0F, std::chrono::seconds(5)));
  holder.kill();
  EXPECT_TRUE(isHeardAt(monitor, 0.5F, std::chrono::seconds(1)));
  EXPECT_TRUE(session::ourNodes().empty());
}

TEST_F(Recovery, AfterAKillAFreshPlayerIsNeitherQuietNorRouted) {
  auto player = playSignal({"--app-id", "test.player"});
  const MonitorRecorder monitor(session::sinkA);
  ChildProcess holder({QUILLMERE_PIPEWIRE_PROBE, "hold", "test.player", "0.5", session::sinkB});
  ASSERT_TRUE(isHeardAt(monitor, 0.0F, std::chrono::seconds(5)));
  holder.kill();
  player.kill();
  const auto again = playSignal({"--app-id", "test.player"});
  EXPECT_TRUE(isHeardAt(monitor, 0.5F, std::chrono::seconds(2)));
}

TEST_F(Recovery, TheNextStartDeletesTheTargetsThatAKillLeft) {
  const auto player = playSignal({"--app-id", "test.player"});
  const MonitorRecorder monitor(session::sinkA);
  ChildProcess holder({QUILLMERE_PIPEWIRE_PROBE, "hold", "test.player", "0.25"});
  ASSERT_TRUE(isHeardAt(monitor, 0.125F, std::chrono::seconds(5)));
  holder.kill();
  ASSERT_NE(run({"pw-metadata"}).find("target.object"), std::string::npos);
  const Machine machine;
  EXPECT_TRUE(eventually([] { return run({"pw-metadata"}).find("target.object") == std::string::npos; }));
}

TEST_F(Recovery, TheTapIsBackAfterTheDaemonHasRestarted) {
  Machine machine;
  auto player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const auto device = machine.device(session::sinkA);
  const auto process = machine.process("test.player");
  const TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  session::control("stop", {"all"});
  player.reset();
  EXPECT_TRUE(eventually([&] { return machine.number(device, audio::deviceIsAlive) == 0; }));
  session::control("start", {"all"});
  player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  const MonitorRecorder monitor(session::sinkA);
  EXPECT_TRUE(isHeardAt(monitor, 0.25F, std::chrono::seconds(3))) << machine.log.all();
  EXPECT_EQ(machine.device(session::sinkA), device);
  EXPECT_EQ(machine.process("test.player"), process);
  EXPECT_EQ(session::ourTaps().size(), 1U);
}

TEST_F(Recovery, TheTapIsBackAfterTheSessionManagerHasRestarted) {
  Machine machine;
  auto player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  player.reset();
  session::restartSessionManager();
  player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  const MonitorRecorder monitor(session::sinkA);
  EXPECT_TRUE(isHeardAt(monitor, 0.25F, std::chrono::seconds(3))) << machine.log.all();
  EXPECT_EQ(session::ourTaps().size(), 1U);
}

TEST_F(Recovery, NoNodeOfOursStaysWhileTheSessionManagerIsGone) {
  Machine machine;
  const auto player = playSignal({"--app-id", "test.player"});
  ASSERT_TRUE(machine.waitForSound("test.player"));
  const TapUnderTest tap(machine, "test.player", 0.5F);
  ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
  session::control("stop", {"wireplumber"});
  EXPECT_TRUE(eventually([] { return session::ourNodes().empty(); }));
}

TEST_F(Recovery, NothingIsOpenedUnderASessionManagerThatCannotLinkTaps) {
  Machine machine;
  const auto player = playSignal({"--app-id", "test.player"});
  ASSERT_TRUE(machine.waitForSound("test.player"));
  session::addSink("kept");
  const TapUnderTest tap(machine, "test.player", 0.5F, "kept");
  session::control("stop", {"wireplumber"});
  ASSERT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  {
    const MetadataKeeper keeper("pipewire-media-session", "kept");
    ASSERT_TRUE(eventually([&] { return machine.log.contains("the session manager is pipewire-media-session"); }));
    EXPECT_TRUE(session::ourNodes().empty());
  }
  // Any other is trusted.
  const MetadataKeeper keeper("another", "kept");
  EXPECT_TRUE(eventually([] { return !session::ourNodes().empty(); })) << machine.log.all();
}

TEST_F(Recovery, ATapEndedWhileTheDaemonIsAwayDoesNotComeBack) {
  Machine machine;
  auto player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  ASSERT_TRUE(machine.waitForSound("test.player"));
  {
    const TapUnderTest tap(machine, "test.player", 0.5F);
    ASSERT_TRUE(eventually([&] { return tap.calls() > 2; }));
    session::control("stop", {"all"});
    player.reset();
  }
  session::control("start", {"all"});
  player = std::make_unique<ChildProcess>(playSignal({"--app-id", "test.player"}));
  const MonitorRecorder monitor(session::sinkA);
  EXPECT_TRUE(isHeardAt(monitor, 0.5F, std::chrono::seconds(3)));
  EXPECT_TRUE(session::ourNodes().empty());
}

}  // namespace
}  // namespace quillmere::test
