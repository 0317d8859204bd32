// Lists, names and choices of applications, on a desktop in memory.
#include "integrations/AppDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <unordered_set>
#include <vector>

#include "platform/memory/MemoryApplicationChooser.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Apps = std::vector<InstalledApp>;

class Directory : public ::testing::Test {
 protected:
  ~Directory() override { time.shutDown(); }

  Apps installed() {
    Apps apps;
    listing = startTask(time.main(), [&](TaskContext&) -> Async<void> { apps = co_await directory.installedApps(); });
    time.runUntilIdle();
    EXPECT_TRUE(listing.isFinished());
    return apps;
  }
  /// Opens the dialogue; what comes of it is in `chosen`.
  void browse() {
    browsing = startTask(time.main(), [this](TaskContext&) -> Async<void> {
      chosen = co_await directory.browse({"Browse", "Applications"});
      ++answers;
    });
    time.runUntilIdle();
  }
  static std::vector<std::string> names(const Apps& apps) {
    std::vector<std::string> result;
    for (const auto& app : apps) result.push_back(app.name);
    return result;
  }

  VirtualTime time;
  RecordingLogSink log;
  MemoryWorkspace workspace;
  MemoryApplicationChooser chooser;
  std::vector<RunningApplication> sounding;
  AppDirectory directory{workspace, chooser, time.runtime(log), [this] { return sounding; }};
  Task listing;
  Task browsing;
  std::optional<InstalledApp> chosen;
  int answers = 0;
};

TEST_F(Directory, InstalledApplicationsAreSortedByNameIgnoringCase) {
  workspace.install("z", "zebra", "/a/z.desktop");
  workspace.install("b", "Bear", "/a/b.desktop");
  workspace.install("a", "ant", "/a/a.desktop");
  EXPECT_EQ(installed(), (Apps{{"a", "ant", "/a/a.desktop", false},
                               {"b", "Bear", "/a/b.desktop", false},
                               {"z", "zebra", "/a/z.desktop", false}}));
}

TEST_F(Directory, ApplicationsOfOneNameStayInTheOrderOfTheirPlaces) {
  workspace.install("second", "Player", "/a/2");
  workspace.install("first", "PLAYER", "/a/1");
  EXPECT_THAT(names(installed()), ElementsAre("Player", "PLAYER"));
}

TEST_F(Directory, AnIdentifierIsListedOnceFromItsMostImportantPlace) {
  workspace.install("com.example.app", "Mine", "/home/app.desktop");
  workspace.install("com.example.app", "Theirs", "/usr/app.desktop");
  EXPECT_EQ(installed(), (Apps{{"com.example.app", "Mine", "/home/app.desktop", false}}));
}

TEST_F(Directory, AnApplicationWithoutIdentifierIsNotListed) {
  workspace.install("", "Ghost", "/a/ghost.desktop");
  EXPECT_THAT(installed(), IsEmpty());
}

TEST_F(Directory, AnApplicationWithoutANameGoesByItsFile) {
  workspace.install("a", std::nullopt, "/apps/Some Tool.app/");
  workspace.install("b", "", "/apps/.hidden");
  EXPECT_THAT(names(installed()), ElementsAre(".hidden", "Some Tool"));
}

TEST_F(Directory, WhatRunsIsMarkedWhoeverKnowsIt) {
  workspace.install("a", "A", "/a");
  workspace.install("b", "B", "/b");
  workspace.install("c", "C", "/c");
  workspace.launch("b", "B", 2);
  sounding = {{"c", "C", 0}};
  const auto apps = installed();
  EXPECT_FALSE(apps[0].isRunning);
  EXPECT_TRUE(apps[1].isRunning);
  EXPECT_TRUE(apps[2].isRunning);
}

TEST_F(Directory, TheDiskIsReadOnTheBackgroundOnly) {
  workspace.install("a", "A", "/a");
  bool isDone = false;
  listing = startTask(time.main(), [&](TaskContext&) -> Async<void> {
    static_cast<void>(co_await directory.installedApps());
    isDone = true;
  });
  time.runDueOn(time.main());
  EXPECT_EQ(workspace.scanCount(), 0);
  EXPECT_FALSE(isDone);
  time.runDueOn(time.background());
  EXPECT_EQ(workspace.scanCount(), 1);
  EXPECT_FALSE(isDone) << "the answer comes on the main thread";
  time.runDueOn(time.main());
  EXPECT_TRUE(isDone);
}

TEST_F(Directory, WhoIsCancelledDoesNotWaitForTheDisk) {
  workspace.install("a", "A", "/a");
  Apps apps{{"before", "", "", false}};
  listing = startTask(time.main(), [&](TaskContext&) -> Async<void> { apps = co_await directory.installedApps(); });
  time.runDueOn(time.main());
  listing.cancel();
  time.runDueOn(time.main());
  EXPECT_THAT(apps, IsEmpty());
  EXPECT_EQ(workspace.scanCount(), 0);
}

TEST_F(Directory, AThousandApplicationsAreEachThere) {
  for (int i = 0; i < 1000; ++i) {
    const auto number = std::to_string(i);
    workspace.install("org.example.app" + number, "App " + number, "/apps/" + number);
  }
  EXPECT_EQ(installed().size(), 1000U);
}

TEST_F(Directory, RunningApplicationsComeInTheSystemsOrderWithTheirPlace) {
  workspace.install("ant", "Ant", "/apps/ant.desktop");
  workspace.launch("zebra", "Zebra", 1);
  workspace.launch("ant", "Ant the Second", 2);
  EXPECT_EQ(directory.runningApps(),
            (Apps{{"zebra", "Zebra", "", true}, {"ant", "Ant the Second", "/apps/ant.desktop", true}}));
}

TEST_F(Directory, WhatSoundsRunsOnceAndBehindTheOthers) {
  workspace.launch("ant", "Ant", 2);
  sounding = {{"ant", "Another name", 0}, {"tool", "A tool", 0}, {"tool", "A tool", 0}};
  EXPECT_EQ(directory.runningApps(), (Apps{{"ant", "Ant", "", true}, {"tool", "A tool", "", true}}));
}

TEST_F(Directory, WhatMayNeverComeToTheFrontIsNotListedAndStillHasItsName) {
  workspace.setRunningApplications({{"agent", "An Agent", 1, true}, {"ant", "Ant", 2}});
  EXPECT_EQ(directory.runningApps(), (Apps{{"ant", "Ant", "", true}}));
  EXPECT_EQ(directory.name("agent"), "An Agent");
}

TEST_F(Directory, ARunningProcessWithoutIdentifierOrNameIsNotListed) {
  workspace.setRunningApplications({{std::nullopt, "Nobody", 1}, {"nameless", std::nullopt, 2}, {"", "Empty", 3}});
  EXPECT_THAT(directory.runningApps(), IsEmpty());
}

TEST_F(Directory, ANameIsTheRunningApplicationsFirst) {
  workspace.install("com.example.app", "Installed", "/a");
  workspace.launch("com.example.app", "Running", 1);
  workspace.launch("com.example.app", "Running again", 2);
  EXPECT_EQ(directory.name("com.example.app"), "Running");
}

TEST_F(Directory, ThenTheInstalledOnes) {
  workspace.install("com.example.app", "Installed", "/a");
  EXPECT_EQ(directory.name("com.example.app"), "Installed");
  workspace.setRunningApplications({{"com.example.app", std::nullopt, 1}});
  EXPECT_EQ(directory.name("com.example.app"), "Installed") << "a running application may have no name";
}

TEST_F(Directory, AnApplicationThatOnlySoundsHasTheMixersName) {
  sounding = {{"com.example.stream", "Stream", 0}};
  EXPECT_EQ(directory.name("com.example.stream"), "Stream");
}

TEST_F(Directory, ThenOneMadeOfTheIdentifier) {
  EXPECT_EQ(directory.name("com.example.some-tool"), "Some Tool");
  EXPECT_EQ(directory.name("com.acme.foo-bar"), "Foo Bar");
  EXPECT_EQ(directory.name("mpv"), "Mpv");
  EXPECT_EQ(directory.name("org.videolan.VLC"), "VLC");
  EXPECT_EQ(directory.name("com.example.tool."), "Tool") << "empty pieces don't count";
}

TEST_F(Directory, AnIdentifierThatYieldsNoPiecesStandsAsItIs) {
  EXPECT_EQ(directory.name("..."), "...");
  EXPECT_EQ(directory.name("-"), "-") << "never a name that nobody can see";
  EXPECT_EQ(directory.name(""), "");
}

TEST_F(Directory, IconsAreTheWorkspaces) {
  workspace.setIcon("a", ThemedIcon{"icon"});
  EXPECT_EQ(directory.icon("a"), IconReference(ThemedIcon{"icon"}));
  EXPECT_EQ(directory.icon("b"), std::nullopt);
}

TEST_F(Directory, TheRevisionGrowsWhenApplicationsHaveChanged) {
  int told = 0;
  const auto watch = directory.revision().observe([&](auto) { ++told; });
  workspace.tellApplicationsChanged();
  workspace.tellApplicationsChanged();
  EXPECT_EQ(told, 2);
}

TEST_F(Directory, AChosenFileIsAnApplicationThatIsNotSaidToRun) {
  workspace.install("com.example.app", "App", "/elsewhere/app.desktop");
  workspace.launch("com.example.app", "App", 1);
  browse();
  EXPECT_EQ(chooser.questions(), (std::vector<ApplicationQuestion>{{"Browse", "Applications"}}));
  chooser.answer("/elsewhere/app.desktop");
  time.runUntilIdle();
  EXPECT_EQ(chosen, (InstalledApp{"com.example.app", "App", "/elsewhere/app.desktop", false}));
}

TEST_F(Directory, ACancelledDialogueChoosesNothing) {
  browse();
  chooser.answer(std::nullopt);
  time.runUntilIdle();
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(Directory, AFileThatIsNoApplicationChoosesNothing) {
  workspace.install("", "Without identifier", "/elsewhere/odd.desktop");
  for (const auto* file : {"/elsewhere/picture.png", "/elsewhere/odd.desktop"}) {
    browse();
    chooser.answer(file);
    time.runUntilIdle();
    EXPECT_EQ(chosen, std::nullopt) << file;
  }
  EXPECT_EQ(answers, 2);
}

TEST(InstalledAppRecord, EqualRecordsHashAlikeAndEachFieldCounts) {
  const InstalledApp app{"id", "name", "path", true};
  const std::unordered_set<InstalledApp> others{
      {"name", "id", "path", true}, {"id", "name", "path", false}, {"id", "name", "", true}, {"id", "", "path", true}};
  EXPECT_EQ(others.size(), 4U);
  EXPECT_FALSE(others.contains(app));
  EXPECT_EQ(std::hash<InstalledApp>{}(app), std::hash<InstalledApp>{}(InstalledApp{"id", "name", "path", true}));
  EXPECT_NE(std::hash<InstalledApp>{}(app), std::hash<InstalledApp>{}(InstalledApp{"name", "id", "path", true}));
}

}  // namespace
}  // namespace quillmere
