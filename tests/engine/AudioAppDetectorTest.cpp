// The join: which applications are offered, in which order, which sound and which listen.
#include "engine/AudioAppDetector.h"

#include <gmock/gmock.h>

#include "EngineFixture.h"
#include "platform/memory/MemoryWorkspace.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Snapshot = CoreAudioProcessMonitor::Snapshot;
using DetectionResult = AudioAppDetector::DetectionResult;

Snapshot silent(const std::string& bundleID) { return {bundleID, 1, 7, false, false}; }
Snapshot playing(const std::string& bundleID) { return {bundleID, 1, 7, true, false}; }
Snapshot listening(const std::string& bundleID) { return {bundleID, 1, 7, false, true}; }

RunningApplication application(const std::string& bundleID, std::optional<std::string> name = std::nullopt) {
  return {bundleID, std::move(name), 1};
}

std::vector<std::string> identifiers(const DetectionResult& result) {
  std::vector<std::string> all;
  for (const auto& app : result.apps) all.push_back(app.bundleID);
  return all;
}

TEST(AudioAppDetector, ARunningApplicationWithAnAudioProcessIsOfferedUntouched) {
  const auto result = AudioAppDetector::merge({silent("org.example.Player")}, {application("org.example.Player", "P")});
  ASSERT_EQ(result.apps.size(), 1U);
  EXPECT_EQ(result.apps[0].bundleID, "org.example.Player");
  EXPECT_EQ(result.apps[0].name, "P");
  EXPECT_EQ(result.apps[0].gain, 1.0F);
  EXPECT_FALSE(result.apps[0].muted);
  EXPECT_FALSE(result.apps[0].routedDeviceUID);
}

TEST(AudioAppDetector, WithoutAnyAudioProcessTheKnownApplicationsThatRunAreOffered) {
  const auto result =
      AudioAppDetector::merge({}, {application("com.spotify.client", "Spotify"),
                                   application("org.example.Editor", "Editor"), application("us.zoom.xos", "Zoom")});
  EXPECT_THAT(identifiers(result), ElementsAre("com.spotify.client", "us.zoom.xos"));
  EXPECT_THAT(result.liveBundleIDs, IsEmpty());
  EXPECT_THAT(result.micBundleIDs, IsEmpty());
}

TEST(AudioAppDetector, ADaemonWithoutARunningApplicationIsNotOfferedButCountsAsLive) {
  const auto result = AudioAppDetector::merge({playing("org.example.daemon"), listening("org.example.daemon")}, {});
  EXPECT_THAT(result.apps, IsEmpty());
  EXPECT_THAT(result.liveBundleIDs, ElementsAre("org.example.daemon"));
  EXPECT_THAT(result.micBundleIDs, ElementsAre("org.example.daemon"));
}

TEST(AudioAppDetector, AHelperThatPlaysMakesItsApplicationLive) {
  for (const auto* helper : {"com.google.Chrome.helper", "com.google.Chrome.HELPER.Renderer"}) {
    const auto result = AudioAppDetector::merge({playing(helper)}, {application("com.google.Chrome", "Chrome")});
    EXPECT_THAT(identifiers(result), ElementsAre("com.google.Chrome")) << helper;
    EXPECT_THAT(result.liveBundleIDs, ElementsAre("com.google.Chrome")) << helper;
  }
}

TEST(AudioAppDetector, AHelperThatListensMakesItsApplicationUseTheMicrophone) {
  const auto result = AudioAppDetector::merge({listening("org.example.Call.helper")}, {});
  EXPECT_THAT(result.micBundleIDs, ElementsAre("org.example.Call"));
  EXPECT_THAT(result.liveBundleIDs, IsEmpty());
}

TEST(AudioAppDetector, HiddenApplicationsAreNeitherShownNorCounted) {
  for (const auto& hidden : AudioAppDetector::hiddenBundleIDs()) {
    if (hidden.ends_with(".helper")) continue;
    const auto result = AudioAppDetector::merge({playing(hidden), listening(hidden)}, {application(hidden, "Hidden")});
    EXPECT_THAT(result.apps, IsEmpty()) << hidden;
    EXPECT_THAT(result.liveBundleIDs, IsEmpty()) << hidden;
    EXPECT_THAT(result.micBundleIDs, IsEmpty()) << hidden;
    EXPECT_EQ(result.snapshots.size(), 2U);
  }
}

TEST(AudioAppDetector, TheHiddenEntryThatEndsInHelperNeverMatchesAnAudioProcess) {
  const std::string entry = "com.apple.audio.Core-Audio-Driver-Service.helper";
  ASSERT_TRUE(AudioAppDetector::hiddenBundleIDs().contains(entry));
  const auto result = AudioAppDetector::merge({playing(entry)}, {});
  EXPECT_THAT(result.liveBundleIDs, ElementsAre("com.apple.audio.Core-Audio-Driver-Service"));
}

TEST(AudioAppDetector, ThisProgramItselfNeverAppears) {
  const auto result =
      AudioAppDetector::merge({playing("app.quillmere.host")}, {application("app.quillmere.host", "Quillmere")});
  EXPECT_THAT(result.apps, IsEmpty());
  EXPECT_THAT(result.liveBundleIDs, IsEmpty());
}

TEST(AudioAppDetector, TheTablesHaveFifteenEntriesEach) {
  EXPECT_EQ(AudioAppDetector::hiddenBundleIDs().size(), 15U);
  EXPECT_EQ(AudioAppDetector::knownAudioApps().size(), 15U);
}

TEST(AudioAppDetector, AProcessWithAnEmptyIdentifierStaysInTheSnapshotsAndMatchesNoApplication) {
  const auto result = AudioAppDetector::merge({silent("")}, {{std::nullopt, "Nameless", 1}});
  EXPECT_THAT(result.apps, IsEmpty());
  EXPECT_THAT(result.snapshots, ElementsAre(silent("")));
}

TEST(AudioAppDetector, AnApplicationWithoutANameAppearsUnderItsIdentifier) {
  const auto result = AudioAppDetector::merge({silent("org.example.Player")}, {application("org.example.Player")});
  EXPECT_EQ(result.apps[0].name, "org.example.Player");
}

TEST(AudioAppDetector, OfSeveralRunningApplicationsWithOneIdentifierTheFirstStands) {
  const auto result = AudioAppDetector::merge({silent("a")}, {application("a", "First"), application("a", "Second")});
  ASSERT_EQ(result.apps.size(), 1U);
  EXPECT_EQ(result.apps[0].name, "First");
}

TEST(AudioAppDetector, LiveApplicationsComeFirstThenNamesIgnoringCase) {
  const auto result =
      AudioAppDetector::merge({silent("1"), silent("2"), playing("3"), playing("4"), silent("5")},
                              {application("1", "beta"), application("2", "Alpha"), application("3", "zulu"),
                               application("4", "Yankee"), application("5", "Gamma")});
  EXPECT_THAT(identifiers(result), ElementsAre("4", "3", "2", "1", "5"));
}

TEST(AudioAppDetector, EqualNamesKeepTheSameOrderAtEveryPoll) {
  const std::vector<RunningApplication> one{application("b", "Same"), application("a", "same")};
  const std::vector<RunningApplication> other{application("a", "same"), application("b", "Same")};
  const std::vector<Snapshot> snapshots{playing("a"), playing("b")};
  EXPECT_EQ(identifiers(AudioAppDetector::merge(snapshots, one)),
            identifiers(AudioAppDetector::merge(snapshots, other)));
}

TEST(AudioAppDetector, TheSnapshotsComeOutAsTheyWentIn) {
  const std::vector<Snapshot> snapshots{playing("b.helper"), silent(""), listening("app.quillmere.host")};
  EXPECT_EQ(AudioAppDetector::merge(snapshots, {}).snapshots, snapshots);
}

struct AudioAppDetectorStream : EngineFixture {
  MemoryWorkspace workspace;
  AudioAppDetector detector{hardware, workspace, time.background()};
};

TEST_F(AudioAppDetectorStream, AResultArrivesAtOnceAndThenWithEachPoll) {
  workspace.launch("org.example.Player", "Player", 42);
  auto stream = detector.runningAudioApps();
  std::vector<std::vector<std::string>> results;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto result = co_await stream.next()) results.push_back(identifiers(*result));
  });
  time.runUntilIdle();
  EXPECT_THAT(results, ElementsAre(IsEmpty()));
  hardware.addProcess({.bundleID = "org.example.Player", .pid = 42, .isRunningOutput = true});
  time.advance(150ms);
  ASSERT_EQ(results.size(), 2U);
  EXPECT_THAT(results[1], ElementsAre("org.example.Player"));
  time.advance(300ms);
  EXPECT_EQ(results.size(), 4U);
}

TEST_F(AudioAppDetectorStream, AChangeOnEitherSideOfTheJoinIsInTheNextResult) {
  hardware.addProcess({.bundleID = "org.example.Player", .pid = 42});
  auto stream = detector.runningAudioApps();
  std::vector<DetectionResult> results;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto result = co_await stream.next()) results.push_back(*result);
  });
  time.runUntilIdle();
  EXPECT_THAT(identifiers(results.back()), IsEmpty());
  workspace.launch("org.example.Player", "Player", 42);
  time.advance(150ms);
  EXPECT_THAT(identifiers(results.back()), ElementsAre("org.example.Player"));
  hardware.addProcess({.bundleID = "org.example.daemon", .pid = 43, .isRunningOutput = true});
  time.advance(150ms);
  EXPECT_THAT(results.back().liveBundleIDs, ElementsAre("org.example.daemon"));
  EXPECT_EQ(results.back().snapshots.size(), 2U);
  workspace.terminate("org.example.Player");
  time.advance(150ms);
  EXPECT_THAT(identifiers(results.back()), IsEmpty());
}

TEST_F(AudioAppDetectorStream, AStreamThatIsLetGoEndsBothTasks) {
  {
    const auto stream = detector.runningAudioApps();
    time.advance(1s);
    EXPECT_GT(workspace.listingCount(), 5);
  }
  time.advance(150ms);
  hardware.clearCalls();
  const int listings = workspace.listingCount();
  time.advance(1min);
  EXPECT_THAT(hardware.calls(), IsEmpty());
  EXPECT_EQ(workspace.listingCount(), listings);
}

}  // namespace
}  // namespace quillmere
