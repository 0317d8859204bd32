// Kills and restarts: every application is heard again by itself, and what was live comes back.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

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

std::size_t countOf(std::string_view wanted, std::string_view text) {
  std::size_t count = 0;
  for (auto at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at + wanted.size())) ++count;
  return count;
}

/// Global ids of the connections that this process has as the mixer.
std::vector<std::string> ourClients() {
  std::vector<std::string> found;
  std::istringstream lines(run({"pw-cli", "ls", "Client"}));
  std::string id;
  for (std::string line; std::getline(lines, line);) {
    if (const auto at = line.find("id "); at != std::string::npos && line.find(", type ") != std::string::npos) {
      id = line.substr(at + 3, line.find(',') - at - 3);
    }
    if (line.find("application.name = \"Quillmere\"") != std::string::npos) found.push_back(id);
  }
  return found;
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
  auto gone = std::make_unique<TapUnderTest>(machine, "test.player", 0.5F);
  session::control("stop", {"wireplumber"});
  ASSERT_TRUE(eventually([] { return session::ourNodes().empty(); }));
  {
    const MetadataKeeper keeper("pipewire-media-session", "kept");
    ASSERT_TRUE(eventually([&] { return machine.log.contains("the session manager is pipewire-media-session"); }));
    gone.reset();
    // What was decided on has been carried out by the time that a later change of the graph is told.
    session::addSink("late");
    ASSERT_TRUE(eventually([&] { return machine.device("late") != 0; }));
    EXPECT_TRUE(session::ourNodes().empty());
  }
  // Any other is trusted.
  const MetadataKeeper keeper("another", "kept");
  EXPECT_TRUE(eventually([] { return !session::ourNodes().empty(); })) << machine.log.all();
}

TEST_F(Recovery, TheTapIsBackWhenTheSessionManagerThatCannotLinkItLeavesTheGraphToAnother) {
  Machine machine;
  const auto player = playSignal({"--app-id", "test.player"});
  ASSERT_TRUE(machine.waitForSound("test.player"));
  session::addSink("kept");
  const TapUnderTest tap(machine, "test.player", 0.5F, "kept");
  session::control("stop", {"wireplumber"});
  auto first = std::make_unique<MetadataKeeper>("pipewire-media-session", "kept");
  ASSERT_TRUE(eventually([&] { return machine.log.contains("the session manager is pipewire-media-session"); }));
  const MetadataKeeper second("another", "kept");
  ASSERT_TRUE(eventually([] { return countOf("\"default\"", run({"pw-cli", "ls", "Metadata"})) == 2; }));
  first.reset();
  EXPECT_TRUE(eventually([] { return !session::ourNodes().empty(); })) << machine.log.all();
}

TEST_F(Recovery, ASessionManagerThatCannotLinkTapsIsNamedAgainAfterTheConnectionWasLost) {
  const Machine machine;
  session::control("stop", {"wireplumber"});
  const MetadataKeeper keeper("pipewire-media-session", session::sinkA);
  const auto timesNamed = [&] { return countOf("the session manager is pipewire-media-session", machine.log.all()); };
  ASSERT_TRUE(eventually([&] { return timesNamed() == 1; }));
  for (const auto& client : ourClients()) run({"pw-cli", "destroy", client});
  EXPECT_TRUE(eventually([&] { return timesNamed() == 2; })) << machine.log.all();
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
