// The picture of what runs, on a machine of files.
#include "platform/linux/ApplicationRegistry.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include "runtime/Clocks.h"
#include "runtime/SerialQueue.h"
#include "runtime/VirtualTime.h"
#include "support/FakeProc.h"
#include "support/RecordingLogSink.h"
#include "support/TemporaryFolder.h"

namespace quillmere {
namespace {

using support::FakeProc;
using support::RecordingLogSink;
using support::TemporaryFolder;

class ApplicationRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    install("spotify", "Name=Spotify\nIcon=spotify-client\nExec=spotify %U");
    install("org.gnome.Totem", "Name=Videos\nIcon=org.gnome.Totem\nExec=totem %U");
    install("google-chrome", "Name=Google Chrome\nExec=/usr/bin/google-chrome-stable %U");
    install("org.kde.konsole", "Name=Konsole\nExec=konsole\nCategories=System;TerminalEmulator;");
    install("helper", "Name=Helper\nExec=helper\nNoDisplay=true");
    install("vim", "Name=Vim\nExec=vim %F\nTerminal=true");
  }
  void install(const std::string& id, const std::string& keys) {
    data_.write("applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\n" + keys + "\n");
  }
  ApplicationRegistry& registry() {
    if (!registry_) {
      ApplicationRegistryOptions options;
      options.procRoot = proc_.path();
      options.dataFolders = {data_.path()};
      options.searchPath = "/nowhere";
      options.userID = userID_;
      registry_ = std::make_unique<ApplicationRegistry>(time_.runtime(log_), options);
    }
    return *registry_;
  }
  /// The picture after the background has had its turn.
  std::vector<KnownApplication> running() {
    static_cast<void>(registry().runningApplications());
    time_.runUntilIdle();
    return registry().runningApplications();
  }
  std::vector<std::string> runningIDs() {
    std::vector<std::string> ids;
    for (const auto& application : running()) ids.push_back(application.identifier);
    return ids;
  }
  static ClientFacts clientOf(std::int32_t pid) {
    ClientFacts facts;
    facts.pid = pid;
    facts.pidIsTrusted = true;
    return facts;
  }

  VirtualTime time_;
  RecordingLogSink log_;
  FakeProc proc_;
  TemporaryFolder data_;
  std::uint32_t userID_ = ::getuid();
  std::unique_ptr<ApplicationRegistry> registry_;
};

using Ids = std::vector<std::string>;

TEST_F(ApplicationRegistryTest, AProcessOfAScopeHasItsEntrysNameAndIcon) {
  proc_.start(100, "/usr/libexec/totem-real", "app-gnome-org.gnome.Totem-100.scope");
  const auto applications = running();
  ASSERT_EQ(applications.size(), 1U);
  EXPECT_EQ(applications[0], (KnownApplication{"org.gnome.Totem", "Videos", ThemedIcon{"org.gnome.Totem"}, 100, true,
                                               data_.path("applications/org.gnome.Totem.desktop")}));
}

/// Nobody's own thread, and nothing is ever done on it.
class Elsewhere final : public Executor {
 public:
  void post(Work /*work*/) override {}
  TimerID postAfter(Duration /*delay*/, Work /*work*/) override { return 0; }
  void cancelTimer(TimerID /*timer*/) override {}
  [[nodiscard]] bool isCurrent() const override { return false; }
};

TEST_F(ApplicationRegistryTest, WhoAsksDuringTheFirstLookWaitsForWhatItFinds) {
  // So many that the first look takes a while.
  for (int number = 0; number < 400; ++number) {
    const auto id = "org.example.App" + std::to_string(number);
    install(id, "Name=An Application\nIcon=app\nExec=app" + std::to_string(number));
  }
  Elsewhere elsewhere;
  SystemClocks clocks;
  ApplicationRegistryOptions options;
  options.procRoot = proc_.path();
  options.dataFolders = {data_.path()};
  options.searchPath = "/nowhere";
  ApplicationRegistry fresh(Runtime{elsewhere, elsewhere, clocks, log_, makeThreadSerialQueue}, options);
  constexpr int askers = 8;
  std::latch all(askers);
  std::atomic<int> answered = 0;
  {
    std::vector<std::jthread> threads;
    for (int number = 0; number < askers; ++number) {
      threads.emplace_back([&] {
        all.arrive_and_wait();
        if (fresh.application("org.example.App399")) ++answered;
      });
    }
  }
  EXPECT_EQ(answered, askers);
}

TEST_F(ApplicationRegistryTest, AWellKnownApplicationHasTheMixersIdentifier) {
  proc_.start(100, "/usr/share/spotify/spotify");
  const auto applications = running();
  ASSERT_EQ(applications.size(), 1U);
  EXPECT_EQ(applications[0].identifier, "com.spotify.client");
  EXPECT_EQ(applications[0].name, "Spotify");
}

TEST_F(ApplicationRegistryTest, SeveralProcessesFoldIntoOneUnderTheFirstsId) {
  for (const int pid : {300, 301, 302})
    proc_.start(pid, "/opt/google/chrome/chrome", "app-google\\x2dchrome-300.scope");
  const auto applications = running();
  ASSERT_EQ(applications.size(), 1U);
  EXPECT_EQ(applications[0].identifier, "com.google.Chrome");
  EXPECT_EQ(applications[0].pid, 300);
  time_.background().post([&] { EXPECT_EQ(registry().representativePID(302), 300); });
  time_.runUntilIdle();
}

TEST_F(ApplicationRegistryTest, WhatIsTypedIntoATerminalIsNotTheTerminal) {
  proc_.start(200, "/usr/bin/konsole", "app-org.kde.konsole-200.scope");
  proc_.start(201, "/usr/bin/mpv", "app-org.kde.konsole-200.scope");
  proc_.start(202, "/usr/bin/totem", "app-org.kde.konsole-200.scope");
  EXPECT_EQ(runningIDs(), (Ids{"org.kde.konsole", "org.gnome.Totem"}));
  EXPECT_EQ(registry().identify(clientOf(201)), "mpv");
}

TEST_F(ApplicationRegistryTest, AFlatpaksProcessesGoByTheSandbox) {
  proc_.start(400, {"/app/bin/spotify", {"spotify"}, "session-1.scope", "com.spotify.Client"});
  proc_.start(401, "/app/bin/player", "app-flatpak-org.example.Player-401.scope");
  EXPECT_EQ(registry().identify(clientOf(400)), "com.spotify.client");
  EXPECT_EQ(registry().identify(clientOf(401)), "org.example.Player") << "even without an installed entry";
}

TEST_F(ApplicationRegistryTest, ASnapsProcessesGoByTheSnap) {
  proc_.start(500, "/snap/discord/180/usr/share/discord/Discord",
              "snap.discord.discord-0f1e2d3c-0011-2233-4455-66778899aabb.scope");
  proc_.start(501, "/snap/slack/12/usr/lib/slack/slack");
  EXPECT_EQ(registry().identify(clientOf(500)), "com.hnc.Discord");
  EXPECT_EQ(registry().identify(clientOf(501)), "com.tinyspeck.slackmacgap");
}

TEST_F(ApplicationRegistryTest, InvisibleAndTerminalProgramsAreMarked) {
  proc_.start(1, "/usr/bin/helper");
  proc_.start(2, "/usr/bin/vim");
  for (const auto& application : running()) EXPECT_FALSE(application.isVisible) << application.identifier;
  EXPECT_EQ(runningIDs().size(), 2U);
}

TEST_F(ApplicationRegistryTest, ProcessesWithoutEntryAreNoApplications) {
  proc_.start(1, "/usr/bin/unknown-daemon");
  EXPECT_TRUE(running().empty());
}

TEST_F(ApplicationRegistryTest, OthersProcessesDoNotCount) {
  userID_ = ::getuid() + 1;
  proc_.start(100, "/usr/share/spotify/spotify");
  EXPECT_TRUE(running().empty());
  EXPECT_EQ(registry().identify(clientOf(100)), "");
}

TEST_F(ApplicationRegistryTest, ProcessesThatVanishWhileTheyAreReadAreNothing) {
  proc_.vanishWhileRead(100);
  proc_.start(101, "/usr/share/spotify/spotify");
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
}

TEST_F(ApplicationRegistryTest, AMissingProcIsAnEmptyMachine) {
  ApplicationRegistryOptions options;
  options.procRoot = "/nowhere/proc";
  options.dataFolders = {"/nowhere"};
  ApplicationRegistry lost(time_.runtime(log_), options);
  time_.runUntilIdle();
  EXPECT_TRUE(lost.runningApplications().empty());
  EXPECT_EQ(lost.identify(clientOf(1)), "");
}

TEST_F(ApplicationRegistryTest, MainNeverLooksItself) {
  proc_.start(100, "/usr/share/spotify/spotify");
  auto& subject = registry();
  EXPECT_TRUE(subject.runningApplications().empty()) << "the look waits for the background";
  time_.runUntilIdle();
  EXPECT_EQ(subject.runningApplications().size(), 1U);
}

TEST_F(ApplicationRegistryTest, OneLookASecondWhoeverAsks) {
  EXPECT_TRUE(running().empty());
  proc_.start(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::milliseconds(900));
  EXPECT_TRUE(running().empty()) << "the picture is younger than a second";
  time_.advance(std::chrono::milliseconds(100));
  EXPECT_EQ(running().size(), 1U);
  proc_.end(100);
  time_.advance(std::chrono::seconds(1));
  EXPECT_TRUE(running().empty());
}

TEST_F(ApplicationRegistryTest, WhileTheKernelSaysThatNoProcessCameOrWentTheListIsNotReadAgainForTenSeconds) {
  proc_.tell(80, 99);
  EXPECT_TRUE(running().empty());
  // As a container may hide it: nothing that the kernel says tells of it.
  proc_.start(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::seconds(9));
  EXPECT_TRUE(running().empty());
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(running().size(), 1U);
}

TEST_F(ApplicationRegistryTest, AProcessThatHasANewNumberOrIsMissingInTheSumIsNoticedAtTheNextLook) {
  proc_.tell(80, 99);
  EXPECT_TRUE(running().empty());
  proc_.start(100, "/usr/share/spotify/spotify");
  proc_.tell(80, 100);
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(running().size(), 1U);
  proc_.end(100);
  proc_.tell(79, 100);
  time_.advance(std::chrono::seconds(1));
  EXPECT_TRUE(running().empty());
}

TEST_F(ApplicationRegistryTest, AProcessThatBecomesAnotherProgramIsNoticedWhateverTheKernelSays) {
  proc_.tell(80, 100);
  proc_.start(100, "/bin/launcher-script-host");
  EXPECT_TRUE(running().empty());
  proc_.replace(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
}

TEST_F(ApplicationRegistryTest, AnApplicationThatBecomesAnotherProgramIsGoneWhateverTheKernelSays) {
  proc_.tell(80, 100);
  proc_.start(100, "/usr/share/spotify/spotify");
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
  proc_.replace(100, "/bin/launcher-script-host");
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{});
}

TEST_F(ApplicationRegistryTest, ToSeeWhetherAProcessHasBecomeAnotherProgramTheListIsNotRead) {
  proc_.tell(80, 100);
  proc_.start(100, "/bin/launcher-script-host");
  EXPECT_TRUE(running().empty());
  // Only the list would show it.
  proc_.start(99, "/usr/share/spotify/spotify");
  proc_.replace(100, "/usr/bin/totem");
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{"org.gnome.Totem"});
  time_.advance(std::chrono::seconds(9));
  EXPECT_EQ(runningIDs(), (Ids{"org.gnome.Totem", "com.spotify.client"}));
}

TEST_F(ApplicationRegistryTest, ANumberThatIsGivenToAnotherProcessStandsForThatOneAtTheNextLook) {
  proc_.tell(80, 100);
  proc_.start(100, "/usr/share/spotify/spotify");
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"}) << "now it isn't asked again for two seconds";
  // What is kept under another name can't lend its inode to the new one.
  std::filesystem::rename(proc_.path() + "/100", proc_.path() + "/gone");
  proc_.start(100, "/bin/launcher-script-host");
  proc_.tell(81, 100);
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{});
}

TEST_F(ApplicationRegistryTest, ALookThatFindsSomethingElseIsRaisedAndOneThatDoesNotIsNot) {
  static_cast<void>(running());
  const auto before = registry().changes().raises();
  time_.advance(std::chrono::seconds(1));
  static_cast<void>(running());
  EXPECT_EQ(registry().changes().raises(), before);
  proc_.start(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::seconds(1));
  static_cast<void>(running());
  EXPECT_EQ(registry().changes().raises(), before + 1);
}

TEST_F(ApplicationRegistryTest, APictureGoesStaleWhenTheNextQuestionWouldMakeALook) {
  EXPECT_EQ(registry().changes().staleAt(), MonotonicTime::min()) << "there is no picture yet";
  time_.advance(std::chrono::milliseconds(700));
  EXPECT_EQ(registry().changes().staleAt(), time_.monotonicNow() + std::chrono::milliseconds(300))
      << "the first look was made at the beginning";
  time_.advance(std::chrono::seconds(2));
  static_cast<void>(running());
  EXPECT_EQ(registry().changes().staleAt(), time_.monotonicNow() + std::chrono::seconds(1));
  proc_.tell(80, 99);
  for (int look = 0; look < 3; ++look) {
    time_.advance(std::chrono::seconds(1));
    static_cast<void>(running());
    EXPECT_EQ(registry().changes().staleAt(), time_.monotonicNow() + std::chrono::seconds(1));
  }
}

TEST_F(ApplicationRegistryTest, TheOrderIsThatOfAppearance) {
  proc_.start(900, "/usr/bin/totem");
  EXPECT_EQ(running().size(), 1U);
  proc_.start(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), (Ids{"org.gnome.Totem", "com.spotify.client"}));
}

TEST_F(ApplicationRegistryTest, AProcessThatBecomesAnotherProgramIsNoticed) {
  proc_.start(100, "/bin/launcher-script-host");
  EXPECT_TRUE(running().empty());
  proc_.replace(100, "/usr/share/spotify/spotify");
  time_.advance(std::chrono::seconds(1));
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
}

TEST_F(ApplicationRegistryTest, AnUpdatedProgramKeepsItsName) {
  proc_.start(100, "/usr/share/spotify/spotify (deleted)");
  EXPECT_EQ(runningIDs(), Ids{"com.spotify.client"});
}

TEST_F(ApplicationRegistryTest, AnApplicationInstalledWhileItRunsIsFound) {
  proc_.start(100, "/opt/new/newplayer");
  EXPECT_TRUE(running().empty());
  install("newplayer", "Name=New Player\nExec=newplayer");
  time_.advance(std::chrono::seconds(6));
  EXPECT_EQ(runningIDs(), Ids{"newplayer"});
}

TEST_F(ApplicationRegistryTest, InstalledApplicationsAreKnownByTheirIdentifier) {
  registry();
  time_.runUntilIdle();
  const auto spotify = registry().application("com.spotify.client");
  ASSERT_TRUE(spotify);
  EXPECT_EQ(spotify->name, "Spotify");
  EXPECT_EQ(spotify->pid, 0);
  EXPECT_EQ(registry().application("com.example.none"), std::nullopt);
}

TEST_F(ApplicationRegistryTest, APlayersEntryHelpsWhereItsProcessTellsNothing) {
  proc_.start(100, "/usr/share/spotify/spotify");
  proc_.start(101, "/usr/libexec/bridge");
  running();
  EXPECT_EQ(registry().representativePID(101, "spotify"), 100);
  EXPECT_EQ(registry().representativePID(101), 101);
  EXPECT_EQ(registry().representativePID(-5), -5);
}

TEST_F(ApplicationRegistryTest, BrokenEntriesAreReportedOnce) {
  data_.write("applications/broken.desktop", "rubbish");
  running();
  install("another", "Name=Another");
  time_.advance(std::chrono::seconds(10));
  running();
  EXPECT_EQ(log_.count("broken.desktop"), 1);
}

// --- audio clients

TEST_F(ApplicationRegistryTest, ThePortalsWordCountsFirst) {
  proc_.start(100, "/usr/bin/totem");
  auto facts = clientOf(100);
  facts.portalAppID = "com.spotify.Client";
  facts.applicationID = "org.gnome.Totem";
  EXPECT_EQ(registry().identify(facts), "com.spotify.client");
}

TEST_F(ApplicationRegistryTest, TheEntryCountsBeforeTheApplicationID) {
  proc_.start(100, "/usr/bin/totem");
  auto facts = clientOf(100);
  facts.applicationID = "org.example.other";
  EXPECT_EQ(registry().identify(facts), "org.gnome.Totem");
}

TEST_F(ApplicationRegistryTest, TheApplicationIDCountsBeforeTheBinary) {
  proc_.start(100, "/usr/bin/unknown");
  auto facts = clientOf(100);
  facts.applicationID = "org.example.player";
  EXPECT_EQ(registry().identify(facts), "org.example.player");
}

TEST_F(ApplicationRegistryTest, TheBinaryCountsBeforeTheName) {
  proc_.start(100, "/usr/bin/pw-cat");
  auto facts = clientOf(100);
  facts.applicationName = "playback";
  facts.nodeName = "playback";
  EXPECT_EQ(registry().identify(facts), "pw-cat");
}

TEST_F(ApplicationRegistryTest, APulseClientsWordOnItsProcessIsChecked) {
  proc_.start(2, "/usr/bin/totem");
  ClientFacts facts;
  facts.pid = 2;
  facts.clientAPI = "pipewire-pulse";
  facts.processBinary = "spotify";
  EXPECT_EQ(registry().identify(facts), "com.spotify.client") << "2 is a number from inside a sandbox";
  facts.processBinary = "totem";
  EXPECT_EQ(registry().identify(facts), "org.gnome.Totem");
}

TEST_F(ApplicationRegistryTest, AnInterpretersClientGoesByItsScriptOrItsOwnName) {
  proc_.start(100, {"/usr/bin/python3.11", {"python3", "/usr/bin/quodlibet"}, "session-1.scope", {}});
  proc_.start(101, {"/usr/bin/python3.11", {"python3"}, "session-1.scope", {}});
  EXPECT_EQ(registry().identify(clientOf(100)), "quodlibet");
  auto facts = clientOf(101);
  facts.applicationName = "My Radio";
  EXPECT_EQ(registry().identify(facts), "My Radio");
  facts.applicationName = "playback";
  EXPECT_EQ(registry().identify(facts), "python3.11");
}

TEST_F(ApplicationRegistryTest, WithoutAProcessTheNameOfTheBinaryInAFrameIsTaken) {
  ClientFacts facts;
  facts.applicationName = "ALSA plug-in [aplay]";
  EXPECT_EQ(registry().identify(facts), "aplay");
  facts.applicationName = "PipeWire ALSA [speaker-test]";
  EXPECT_EQ(registry().identify(facts), "speaker-test");
}

TEST_F(ApplicationRegistryTest, NobodyIsCalledPlayback) {
  ClientFacts facts;
  facts.applicationName = "Playback";
  facts.nodeName = "playback";
  EXPECT_EQ(registry().identify(facts), "");
  facts.processBinary = "mplayer";
  EXPECT_EQ(registry().identify(facts), "mplayer");
}

TEST_F(ApplicationRegistryTest, AClientOfWhichNothingIsKnownHasNoIdentifier) {
  EXPECT_EQ(registry().identify(ClientFacts{}), "");
}

TEST_F(ApplicationRegistryTest, AbsurdProcessIdsAreIgnored) {
  for (const std::int32_t pid : {-1, 0, 1, 2147483647}) {
    auto facts = clientOf(pid);
    facts.processBinary = "mplayer";
    EXPECT_EQ(registry().identify(facts), "mplayer") << pid;
  }
}

TEST_F(ApplicationRegistryTest, AnEndlessNameIsCut) {
  ClientFacts facts;
  facts.applicationID = std::string(4096, 'i');
  EXPECT_EQ(registry().identify(facts), std::string(255, 'i'));
  facts.applicationID = "a\xFF\"b\n";
  EXPECT_EQ(registry().identify(facts), "a\xEF\xBF\xBD\"b");
}

}  // namespace
}  // namespace quillmere
