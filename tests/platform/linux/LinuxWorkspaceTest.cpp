// Running applications, icons and addresses on a machine of files.
#include "platform/linux/LinuxWorkspace.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <map>

#include "platform/linux/ApplicationRegistry.h"
#include "platform/linux/PipeWireAudioHardware.h"
#include "runtime/VirtualTime.h"
#include "support/FakeProc.h"
#include "support/RecordingLogSink.h"
#include "tests/platform/contract/WorkspaceContract.h"

namespace quillmere {
namespace {

class LinuxWorkspaceTest : public ::testing::Test {
 protected:
  LinuxWorkspaceTest() {
    install("org.gnome.Totem", "Name=Videos\nIcon=org.gnome.Totem\nExec=totem");
    install("helper", "Name=Helper\nExec=helper\nNoDisplay=true");
    install("spotify", "Name=Spotify\nIcon=/opt/spotify/icon.png\nExec=spotify");
    ApplicationRegistryOptions options;
    options.procRoot = proc_.path();
    options.dataFolders = {data_.path()};
    options.searchPath = "/nowhere";
    registry_ = std::make_shared<ApplicationRegistry>(time_.runtime(log_), options);
    workspace_ = std::make_unique<LinuxWorkspace>(registry_, [this] { return clients_; }, log_);
  }
  void install(const std::string& id, const std::string& keys) {
    data_.write("applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\n" + keys + "\n");
  }
  std::vector<RunningApplication> running() {
    time_.advance(std::chrono::seconds(1));
    static_cast<void>(workspace_->runningApplications());
    time_.runUntilIdle();
    return workspace_->runningApplications();
  }

  VirtualTime time_;
  support::RecordingLogSink log_;
  support::FakeProc proc_;
  support::TemporaryFolder data_;
  std::vector<AudioClient> clients_;
  std::shared_ptr<ApplicationRegistry> registry_;
  std::unique_ptr<LinuxWorkspace> workspace_;
};

TEST_F(LinuxWorkspaceTest, VisibleApplicationsRunInvisibleOnesDoNot) {
  proc_.start(10, "/usr/bin/totem");
  proc_.start(11, "/usr/bin/helper");
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"org.gnome.Totem", "Videos", 10}}));
}

TEST_F(LinuxWorkspaceTest, AnInvisibleOneThatSoundsRuns) {
  proc_.start(11, "/usr/bin/helper");
  clients_ = {{"helper", 11, "helper stream"}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"helper", "Helper", 11}}));
}

TEST_F(LinuxWorkspaceTest, WhoeverHasAnAudioClientRuns) {
  clients_ = {{"mpv", 77, "mpv Media Player"}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"mpv", "mpv Media Player", 77}}));
}

TEST_F(LinuxWorkspaceTest, AToolThatOnlyRecordsDoesNotRunUntilItPlays) {
  clients_ = {{"pw-cat", 11, "pw-record", false}};
  EXPECT_TRUE(running().empty());
  clients_.front().hasPlayed = true;
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"pw-cat", "pw-record", 11}}));
}

TEST_F(LinuxWorkspaceTest, AnInstalledApplicationThatOnlyRecordsRuns) {
  clients_ = {{"com.spotify.client", 11, "Client", false}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"com.spotify.client", "Spotify", 11}}));
}

TEST_F(LinuxWorkspaceTest, AnInvisibleOneThatOnlyRecordsDoesNotRun) {
  proc_.start(11, "/usr/bin/helper");
  clients_ = {{"helper", 11, "helper stream", false}};
  EXPECT_TRUE(running().empty());
}

TEST_F(LinuxWorkspaceTest, AnApplicationWithProcessAndClientIsOne) {
  proc_.start(10, "/usr/bin/totem");
  clients_ = {{"org.gnome.Totem", 12, "Totem"}, {"org.gnome.Totem", 13, "Totem"}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"org.gnome.Totem", "Videos", 10}}));
}

TEST_F(LinuxWorkspaceTest, EveryAnswerIsOfItsMoment) {
  const std::vector<RunningApplication> videos{{"org.gnome.Totem", "Videos", 10}};
  proc_.start(10, "/usr/bin/totem");
  EXPECT_EQ(running(), videos);
  clients_ = {{"mpv", 77, "mpv Media Player"}};
  EXPECT_EQ(workspace_->runningApplications().size(), 2U);
  clients_ = {{"mpv", 77, "mpv - a film"}};
  EXPECT_EQ(workspace_->runningApplications().back().localizedName, "mpv - a film");
  clients_.clear();
  EXPECT_EQ(workspace_->runningApplications(), videos);
  proc_.end(10);
  EXPECT_EQ(running(), std::vector<RunningApplication>{});
}

TEST_F(LinuxWorkspaceTest, AnEntryThatIsInstalledLaterNamesItsClient) {
  clients_ = {{"org.example.New", 5, "some stream"}};
  EXPECT_EQ(running().back().localizedName, "some stream");
  install("org.example.New", "Name=Newcomer\nExec=newcomer");
  time_.advance(std::chrono::seconds(5));
  EXPECT_EQ(running().back().localizedName, "Newcomer");
}

TEST_F(LinuxWorkspaceTest, AClientOfAnInstalledApplicationHasTheEntrysName) {
  clients_ = {{"com.spotify.client", 5, "some stream"}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"com.spotify.client", "Spotify", 5}}));
}

TEST_F(LinuxWorkspaceTest, AClientWithoutANameGoesByItsIdentifier) {
  clients_ = {{"mplayer", 0, ""}, {"other", -9, " \n "}};
  EXPECT_EQ(running(), (std::vector<RunningApplication>{{"mplayer", "mplayer", 0}, {"other", "other", 0}}));
}

TEST_F(LinuxWorkspaceTest, AClientWithoutIdentifierIsNoApplication) {
  clients_ = {{"", 5, "ghost"}};
  EXPECT_TRUE(running().empty());
}

TEST_F(LinuxWorkspaceTest, AnEndlessNameIsCut) {
  clients_ = {{"mplayer", 5, std::string(4096, 'n')}};
  EXPECT_EQ(running()[0].localizedName, std::string(256, 'n'));
}

TEST_F(LinuxWorkspaceTest, IconsOfRunningAndInstalledApplicationsAreTold) {
  proc_.start(10, "/usr/bin/totem");
  running();
  EXPECT_EQ(workspace_->icon("org.gnome.Totem"), IconReference(ThemedIcon{"org.gnome.Totem"}));
  EXPECT_EQ(workspace_->icon("com.spotify.client"), IconReference(FileIcon{"/opt/spotify/icon.png"}));
  EXPECT_EQ(workspace_->icon("com.example.none"), std::nullopt);
}

TEST_F(LinuxWorkspaceTest, InstalledApplicationsAreThoseThatTheDesktopListsUnderTheMixersIdentifiers) {
  install("vim", "Name=Vim\nExec=vim\nTerminal=true");
  install("kde-only", "Name=Kate\nExec=kate\nOnlyShowIn=KDE;");
  install("gone", "Name=Gone\nExec=gone\nTryExec=/nowhere/gone");
  std::vector<std::string> ids;
  time_.background().post([&] {
    for (const auto& application : workspace_->installedApplications()) ids.push_back(application.bundleID);
  });
  time_.runUntilIdle();
  EXPECT_EQ(ids, (std::vector<std::string>{"org.gnome.Totem", "com.spotify.client", "vim"}));
}

TEST_F(LinuxWorkspaceTest, AnEntryEditedInPlaceIsReadAnewForTheList) {
  std::vector<std::string> names;
  const auto list = [&] {
    names.clear();
    time_.background().post([&] {
      for (const auto& application : workspace_->installedApplications()) names.push_back(application.name.value());
    });
    time_.runUntilIdle();
  };
  list();
  EXPECT_EQ(names, (std::vector<std::string>{"Videos", "Spotify"}));
  int told = 0;
  workspace_->onApplicationsChanged([&] { ++told; });
  install("spotify", "Name=Music\nExec=spotify");
  list();
  EXPECT_EQ(names, (std::vector<std::string>{"Videos", "Music"}));
  EXPECT_EQ(told, 1) << "who shows the old name hears of it";
  list();
  EXPECT_EQ(told, 1);
}

TEST_F(LinuxWorkspaceTest, AnEntryAnywhereIsAnApplication) {
  support::TemporaryFolder elsewhere;
  elsewhere.write("My App.desktop", "[Desktop Entry]\nType=Application\nName=Mine\nExec=mine\nNoDisplay=true\n");
  elsewhere.write("link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nURL=https://example.org\n");
  elsewhere.write("broken.desktop", "rubbish");
  elsewhere.write("text.txt", "[Desktop Entry]\nType=Application\nName=Mine\nExec=mine\n");
  const auto at = [&](const std::string& name) { return workspace_->applicationAt(elsewhere.path(name)); };
  EXPECT_EQ(at("My App.desktop"), (InstalledApplication{"My App", "Mine", elsewhere.path("My App.desktop")}));
  for (const auto* name : {"link.desktop", "broken.desktop", "text.txt", ""}) EXPECT_EQ(at(name), std::nullopt) << name;
}

TEST_F(LinuxWorkspaceTest, AnEntryInASubfolderHasTheIdThatItHasInTheList) {
  data_.write("applications/kde/player.desktop", "[Desktop Entry]\nType=Application\nName=Player\nExec=player\n");
  const auto found = workspace_->applicationAt(data_.path("applications/kde/player.desktop"));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->bundleID, "kde-player");
  EXPECT_EQ(workspace_->applicationAt(data_.path("applications/spotify.desktop"))->bundleID, "com.spotify.client");
}

TEST_F(LinuxWorkspaceTest, WhatIsNoAddressIsNotOpened) {
  for (const auto& address : {std::string(), std::string("no address"), std::string("--help"),
                              std::string("https://x") + '\0' + "y", "https://" + std::string(20000, 'x')}) {
    EXPECT_FALSE(workspace_->openURL(address));
  }
  EXPECT_EQ(log_.count("no address"), 5);
}

TEST_F(LinuxWorkspaceTest, AnAddressIsHandedToTheDesktopsOpener) {
  support::TemporaryFolder bin;
  bin.write("xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > \"" + bin.path("opened") + ".tmp\" && mv \"" +
                            bin.path("opened") + ".tmp\" \"" + bin.path("opened") + "\"\n");
  std::filesystem::permissions(bin.path("xdg-open"), std::filesystem::perms::owner_all);
  const char* const path = std::getenv("PATH");
  const std::string oldPath = path != nullptr ? path : "";
  ::setenv("PATH", (bin.path() + ":" + oldPath).c_str(), 1);
  EXPECT_TRUE(workspace_->openURL("https://example.org/a?b=c&d='e'"));
  ::setenv("PATH", oldPath.c_str(), 1);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!std::filesystem::exists(bin.path("opened")) && std::chrono::steady_clock::now() < deadline) ::usleep(2000);
  std::ifstream opened(bin.path("opened"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(opened), {}), "https://example.org/a?b=c&d='e'");
}

/// A machine of files on which entries are installed and processes started.
class LinuxWorkspaceHost {
 public:
  LinuxWorkspaceHost() {
    ApplicationRegistryOptions options;
    options.procRoot = proc_.path();
    options.dataFolders = {data_.path()};
    options.searchPath = "/nowhere";
    options.desktops = std::vector<std::string>{"LXQt"};
    registry_ = std::make_shared<ApplicationRegistry>(time_.runtime(log_), options);
    workspace_ = std::make_unique<LinuxWorkspace>(registry_, LinuxWorkspace::AudioClients{}, log_);
    look();
  }
  Workspace& workspace() { return *workspace_; }
  void launch(const std::string& id, const std::string& name, const std::string& iconName, std::int32_t pid) {
    data_.write("applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\nName=" + name +
                                                       "\nIcon=" + iconName + "\nExec=/opt/" + id + "/" + id + "\n");
    proc_.start(pid, "/opt/" + id + "/" + id);
    pids_[id] = pid;
    look();
  }
  void terminate(const std::string& id) {
    proc_.end(pids_[id]);
    look();
  }
  /// New entries are looked for every five seconds.
  void look() {
    time_.advance(std::chrono::seconds(6));
    static_cast<void>(workspace_->runningApplications());
    time_.runUntilIdle();
  }

 private:
  VirtualTime time_;
  support::RecordingLogSink log_;
  support::FakeProc proc_;
  support::TemporaryFolder data_;
  std::map<std::string, std::int32_t> pids_;
  std::shared_ptr<ApplicationRegistry> registry_;
  std::unique_ptr<LinuxWorkspace> workspace_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, WorkspaceContract, LinuxWorkspaceHost);

}  // namespace
}  // namespace quillmere
