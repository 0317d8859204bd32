// The life of taps without a daemon: opened, live, released, adopted, handed over, suspended.
#include <gtest/gtest.h>

#include <algorithm>
#include <list>

#include "Graph.h"
#include "platform/linux/pipewire/AudioSnapshot.h"
#include "platform/linux/pipewire/StreamMover.h"
#include "platform/linux/pipewire/TapDirector.h"

namespace quillmere::pipewire::test {
namespace {

struct FakePath final : TapPath {
  FakePath(std::uint32_t node, bool& destroyed) : id(node), gone(destroyed) {}
  ~FakePath() override { gone = true; }
  bool isConnected() const override { return connected; }
  bool hasFailed() const override { return failed; }
  std::uint32_t node() const override { return id; }
  void graphChanged() override {}
  void startPlain(const IOBlock*) override { orders.emplace_back("plain"); }
  void startFrom(const IOBlock*, float from) override { orders.push_back("from " + std::to_string(from).substr(0, 4)); }
  void startFromRelease(const IOBlock*) override { orders.emplace_back("adopted"); }
  void stop(float applied) override { orders.push_back("stop " + std::to_string(applied).substr(0, 4)); }
  void hold() override { orders.emplace_back("hold"); }
  std::uint64_t quietMoment() const override { return quiet; }
  void wakeUp() override { isAwake = true; }
  void calmDown() override {
    isAwake = false;
    orders.emplace_back("calm");
  }
  std::uint64_t cycles() const override { return count; }
  double rate() const override { return rateHz; }
  bool isAtUnity() const override { return unity; }
  float releaseGain() const override { return gain; }

  std::uint32_t id;
  bool& gone;
  bool connected = false;
  bool failed = false;
  bool isAwake = false;
  bool unity = false;
  float gain = 1.0F;
  std::uint64_t count = 0;
  double rateHz = 0.0;
  /// The graph has run: quiet moments are known.
  std::uint64_t quiet = 7;
  std::vector<std::string> orders;
};

/// A session manager that plays everything where it asks to be, and on the default output where that isn't there.
struct FakeFinder final : OutputFinder {
  explicit FakeFinder(const GraphModel& graph) : model(graph) {}
  void need(const std::set<Destination>& destinations) override { needed = destinations; }
  void forget() override { needed.clear(); }
  Answer find(const Destination& destination) const override {
    if (const auto told = answers.find(destination); told != answers.end()) return told->second;
    auto output = destination ? model.outputSerial(destination) : std::string();
    if (output.empty() && destination && model.nodeBySerial(*destination) != nullptr) output = *destination;
    return {true, output.empty() ? model.outputSerial(std::nullopt) : output};
  }

  const GraphModel& model;
  std::set<Destination> needed;
  /// What it answers otherwise.
  std::map<Destination, Answer> answers;
};

struct TapDirectorTest : ::testing::Test {
  Graph graph;
  Metadata metadata{graph.model};
  StreamMover mover{graph.model, metadata, Logger(graph.log, "PipeWire")};
  FakeFinder finder{graph.model};
  ObjectIDs ids;
  std::vector<FakePath*> paths;
  /// Serials that the paths were opened for.
  std::vector<std::optional<std::string>> outputs;
  std::list<bool> gone;
  std::shared_ptr<std::atomic<float>> target = std::make_shared<std::atomic<float>>(0.5F);
  std::vector<std::uint64_t> wakes;
  TapDirector director{graph.model,
                       mover,
                       finder,
                       ids,
                       [this](const std::optional<std::string>& output, const std::function<void()>&) {
                         outputs.push_back(output);
                         auto path = std::make_unique<FakePath>(100 + 10 * static_cast<std::uint32_t>(paths.size()),
                                                                gone.emplace_back(false));
                         paths.push_back(path.get());
                         return path;
                       },
                       [this](std::uint64_t nanos) { wakes.push_back(nanos); },
                       Logger(graph.log, "PipeWire")};

  void SetUp() override {
    graph.client(10, "test.player");
    graph.playback(20, 10);
    graph.sink(1, "speakers");
    makeDefault("speakers");
    director.resume();
  }

  void makeDefault(const std::string& name) {
    graph.model.setMetadata(0, "default.audio.sink", R"({"name":")" + name + R"("})");
  }

  /// The path's node appears, is known to the session manager and linked to its output.
  void connect(std::size_t place) {
    auto& path = *paths.at(place);
    path.connected = true;
    graph.node(path.id, "Stream/Input/Audio/Internal", 0);
    graph.link(500 + path.id, path.id, 1);
    director.graphChanged();
  }
  /// The session manager follows the metadata: the stream's only link.
  void follow() {
    metadata.echo();
    graph.model.remove(700);
    if (const auto serial = graph.model.metadataValue(20, "target.object")) {
      if (const auto node = graph.model.nodeIDBySerial(*serial)) graph.link(700, 20, *node);
    }
    director.graphChanged();
  }
  struct Built {
    AudioObjectID tap = 0;
    AudioObjectID device = 0;
    IOProcID proc = 0;
  };
  TapDescription tapOf(const std::string& application) {
    TapDescription tap;
    tap.processes = {ids.of(processKey(application))};
    tap.uuid = Uuid::random();
    tap.isExclusive = false;
    return tap;
  }
  Built build(bool followsDefault = true, const std::string& output = "sink") {
    Built built;
    const auto tap = tapOf("test.player");
    EXPECT_EQ(director.createTap(tap, built.tap), noErr);
    AggregateDescription device;
    device.mainDeviceUID = output;
    device.followsDefaultOutput = followsDefault;
    device.targetGain = target;
    device.taps = {{tap.uuid.text(), true}};
    EXPECT_EQ(director.createDevice(device, built.device), noErr);
    EXPECT_EQ(
        director.createProc(built.device, [](const AudioBufferList&, const AudioBufferList&) {}, built.proc), noErr);
    return built;
  }
  /// Starts and lets the quiet moment come.
  void start(const Built& built) {
    EXPECT_EQ(director.start(built.device, built.proc), noErr);
    director.moment();
  }
  /// Built, linked, started and followed by the stream.
  Built live(bool followsDefault = true, const std::string& output = "sink") {
    const auto built = build(followsDefault, output);
    connect(0);
    start(built);
    follow();
    return built;
  }
  void end(const Built& built, float gain) {
    EXPECT_EQ(director.stop(built.device, built.proc, gain), noErr);
    EXPECT_EQ(director.destroyProc(built.device, built.proc), noErr);
    EXPECT_EQ(director.destroyDevice(built.device), noErr);
    EXPECT_EQ(director.destroyTap(built.tap), noErr);
  }
  void tick(int times) {
    for (int i = 0; i < times; ++i) director.tick();
  }
  [[nodiscard]] bool isGone(std::size_t place) const { return *std::next(gone.begin(), static_cast<long>(place)); }
};

TEST_F(TapDirectorTest, ADeviceThatIsStartedAtOnceTakesStreamsOnceItsNodeIsConnectedAndTheGraphKnowsIt) {
  start(build());
  paths[0]->connected = true;
  director.graphChanged();
  director.moment();
  EXPECT_TRUE(metadata.take().empty());
  graph.node(paths[0]->id, "Stream/Input/Audio/Internal", 0);
  director.graphChanged();
  director.moment();
  EXPECT_FALSE(metadata.take().empty());
}

TEST_F(TapDirectorTest, ADeviceThatIsStartedWhileNoSessionManagerIsThereTakesStreamsWhenOneHasCome) {
  director.suspend();
  start(build());
  EXPECT_TRUE(paths.empty());
  director.resume();
  connect(0);
  director.moment();
  EXPECT_FALSE(metadata.take().empty());
}

TEST_F(TapDirectorTest, StreamsAreOpenedForTheVeryOutputTheyPlayOn) {
  graph.sink(2, "desk");
  build();
  build(false, "desk");
  build(false, "unplugged");
  EXPECT_EQ(outputs, (std::vector<std::optional<std::string>>{"1001", "1002", "1001"}));
}

TEST_F(TapDirectorTest, ALaterDefaultRenewsTheStreamsThatFollowIt) {
  graph.sink(2, "desk");
  live();
  makeDefault("desk");
  director.graphChanged();
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(outputs[1], "1002");
  EXPECT_TRUE(std::ranges::find(paths[0]->orders, "stop 0.00") == paths[0]->orders.end())
      << "the old streams play until the new ones are ready";
  connect(1);
  director.moment();
  EXPECT_EQ(paths[0]->orders.back(), "hold") << "the block has one caller at a time";
  EXPECT_EQ(paths[1]->orders, std::vector<std::string>{"plain"});
  follow();
  EXPECT_TRUE(isGone(0));
}

TEST_F(TapDirectorTest, ARouteWhoseDeviceGoesPlaysOnTheDefaultAndReturnsWithIt) {
  graph.sink(2, "desk");
  live(false, "desk");
  graph.model.remove(2);
  paths[0]->failed = true;
  director.graphChanged();
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(outputs[1], "1001");
  connect(1);
  director.moment();
  follow();
  EXPECT_TRUE(isGone(0));
  graph.sink(3, "desk");
  director.graphChanged();
  ASSERT_EQ(paths.size(), 3U);
  EXPECT_EQ(outputs[2], "1003");
}

TEST_F(TapDirectorTest, AnOutputThatChangesAgainWhileStreamsAreRenewedCountsLast) {
  graph.sink(2, "desk");
  graph.sink(3, "usb");
  live();
  makeDefault("desk");
  director.graphChanged();
  makeDefault("usb");
  director.graphChanged();
  ASSERT_EQ(paths.size(), 3U);
  EXPECT_FALSE(isGone(1)) << "the session manager is busy with it";
  paths[1]->connected = true;
  director.graphChanged();
  EXPECT_TRUE(isGone(1));
  EXPECT_FALSE(isGone(0)) << "what is heard goes on";
  EXPECT_EQ(outputs[2], "1003");
}

TEST_F(TapDirectorTest, WithoutAnyOutputStreamsAreRenewedWhenOneComes) {
  graph.model.remove(1);
  build();
  EXPECT_EQ(outputs[0], std::nullopt);
  director.graphChanged();
  EXPECT_EQ(paths.size(), 1U);
  graph.sink(2, "speakers");
  director.graphChanged();
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(outputs[1], "1002");
}

TEST_F(TapDirectorTest, ANodeThatIsCutOffFromAnOutputThatStandsIsMadeAgainMoreAndMoreRarely) {
  live();
  for (const int patience : {20, 40, 80, 160, 320, 640, 1280, 1280}) {
    const auto before = paths.size();
    paths.back()->failed = true;
    director.graphChanged();
    EXPECT_TRUE(director.wantsTicks());
    tick(patience - 1);
    EXPECT_EQ(paths.size(), before) << "the output may be about to go";
    tick(1);
    ASSERT_EQ(paths.size(), before + 1);
    EXPECT_EQ(outputs.back(), "1001");
  }
  EXPECT_EQ(std::ranges::count(graph.log.lines, "a tap was cut off from its output; it is made again"), 1);
  paths.back()->count = 2000;
  paths.back()->failed = true;
  director.graphChanged();
  const auto played = paths.size();
  tick(20);
  EXPECT_EQ(paths.size(), played + 1) << "one that has played for long is made again soon";
  graph.sink(2, "desk");
  makeDefault("desk");
  director.graphChanged();
  EXPECT_EQ(outputs.back(), "1002") << "another output is tried at once";
  paths.back()->failed = true;
  const auto before = paths.size();
  tick(20);
  EXPECT_EQ(paths.size(), before + 1);
}

TEST_F(TapDirectorTest, StoppingWhileStreamsAreRenewedEndsTheBlockInTheOldOnesToo) {
  const auto built = live();
  graph.sink(2, "desk");
  makeDefault("desk");
  director.graphChanged();
  ASSERT_EQ(paths.size(), 2U);
  end(built, 0.25F);
  EXPECT_EQ(paths[0]->orders.back(), "stop 0.25");
  EXPECT_FALSE(isGone(1)) << "the session manager is busy with it";
  tick(31);
  EXPECT_TRUE(isGone(1)) << "what never was in use is given so much time and no more";
  paths[0]->unity = true;
  director.tick();
  director.moment();
  follow();
  EXPECT_TRUE(isGone(0));
}

TEST_F(TapDirectorTest, UntilTheSessionManagerHasDecidedNothingIsMovedToAnOutputThatIsGuessed) {
  graph.sink(2, "filter");
  finder.answers[std::nullopt] = {false, "1001"};
  const auto built = build();
  EXPECT_EQ(outputs.back(), "1001");
  connect(0);
  start(built);
  EXPECT_TRUE(metadata.take().empty());
  finder.answers[std::nullopt] = {true, "1002"};
  director.graphChanged();
  EXPECT_EQ(outputs.back(), "1002");
  EXPECT_TRUE(isGone(0));
  connect(1);
  director.moment();
  EXPECT_EQ(metadata.take().front(), "20 target.object=1110");
}

TEST_F(TapDirectorTest, AGuessIsNoReasonToLeaveAnOutputThatPlays) {
  graph.sink(2, "desk");
  live();
  finder.answers[std::nullopt] = {false, "1002"};
  director.graphChanged();
  EXPECT_EQ(paths.size(), 1U);
  finder.answers[std::nullopt] = {true, "1002"};
  director.graphChanged();
  EXPECT_EQ(paths.size(), 2U);
}

TEST_F(TapDirectorTest, WhereTheSessionManagerRefusesTheOutputTheTapPlaysNowhereUntilItGivesOne) {
  finder.answers["usb"] = {false, "1001"};
  const auto built = build(false, "usb");
  finder.answers["usb"] = {true, {}};
  director.graphChanged();
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(outputs.back(), std::nullopt);
  EXPECT_FALSE(isGone(0)) << "the session manager is busy with it";
  connect(1);
  start(built);
  tick(500);
  EXPECT_EQ(paths.size(), 2U) << "it waits";
  finder.answers["usb"] = {true, "1001"};
  director.graphChanged();
  ASSERT_EQ(paths.size(), 3U);
  EXPECT_EQ(outputs.back(), "1001");
}

/// A second stream of the application asks for a device of its own.
struct TwoDestinations : TapDirectorTest {
  Built both;
  void begin() {
    graph.sink(2, "desk");
    graph.playback(21, 10, {{"target.object", "desk"}});
    both = live();
    ASSERT_EQ(outputs, (std::vector<std::optional<std::string>>{"1001", "1002"}));
    connect(1);
    director.moment();
  }
};

TEST_F(TwoDestinations, AreEachPlayedOnAnOutputOfTheirOwn) {
  begin();
  EXPECT_EQ(finder.needed, (std::set<Destination>{std::nullopt, "desk"}));
  EXPECT_EQ(graph.model.metadataValue(20, "target.object"), "1100");
  metadata.echo();
  EXPECT_EQ(graph.model.metadataValue(21, "target.object"), "1110");
  EXPECT_EQ(paths[1]->orders, std::vector<std::string>{"from 1.00"}) << "it sounded untapped";
}

TEST_F(TwoDestinations, AreGivenBackBothWhenTheTapEnds) {
  begin();
  metadata.echo();
  end(both, 0.3F);
  EXPECT_EQ(paths[0]->orders.back(), "stop 0.30");
  EXPECT_EQ(paths[1]->orders.back(), "stop 0.50") << "at the gain that it follows";
  for (auto* path : paths) path->unity = true;
  tick(1);
  director.moment();
  metadata.echo();
  EXPECT_EQ(graph.model.metadataValue(20, "target.object"), std::nullopt);
  EXPECT_EQ(graph.model.metadataValue(21, "target.object"), std::nullopt);
  EXPECT_TRUE(finder.needed.empty());
}

TEST_F(TwoDestinations, AreAdoptedBothByATapThatIsRebuiltAtOnce) {
  begin();
  metadata.echo();
  end(both, 0.3F);
  metadata.take();
  const auto again = build();
  start(again);
  EXPECT_EQ(paths.size(), 2U);
  EXPECT_EQ(paths[0]->orders.back(), "adopted");
  EXPECT_EQ(paths[1]->orders.back(), "adopted");
  EXPECT_TRUE(metadata.take().empty());
}

TEST_F(TwoDestinations, AnOutputThatNobodyIsBoundForAnyMoreIsLeft) {
  begin();
  metadata.echo();
  graph.model.remove(21);
  director.graphChanged();
  EXPECT_EQ(finder.needed, (std::set<Destination>{std::nullopt}));
  tick(60);
  EXPECT_TRUE(isGone(1));
  EXPECT_FALSE(isGone(0));
}

TEST_F(TwoDestinations, WithTheSessionManagerGoneNothingOfEitherStays) {
  begin();
  director.suspend();
  EXPECT_TRUE(isGone(0));
  EXPECT_TRUE(isGone(1));
  EXPECT_TRUE(finder.needed.empty());
}

TEST_F(TapDirectorTest, AStreamThatAnotherMixerMovesIsTakenOverThereWithoutAGlide) {
  graph.sink(2, "desk");
  live();
  graph.model.setMetadata(20, "target.object", "1002");
  mover.onTargetChanged(20, "1002");
  director.graphChanged();
  ASSERT_EQ(outputs.back(), "1002");
  connect(1);
  director.moment();
  EXPECT_EQ(paths[1]->orders, std::vector<std::string>{"plain"}) << "it comes from a tap at this very gain";
}

TEST_F(TapDirectorTest, ATapIsPlayedAtTheRateOfItsGraph) {
  const auto built = live();
  EXPECT_EQ(director.rate(built.tap), 48000.0);
  paths[0]->rateHz = 96000.0;
  EXPECT_EQ(director.rate(built.tap), 96000.0);
}

TEST_F(TapDirectorTest, NothingIsMovedBeforeTheStart) {
  const auto built = build();
  connect(0);
  EXPECT_TRUE(metadata.take().empty());
  start(built);
  EXPECT_EQ(metadata.take().front(), "20 target.object=1100");
}

TEST_F(TapDirectorTest, ARunningStreamIsTakenOverFromUnity) {
  const auto built = build();
  connect(0);
  start(built);
  EXPECT_EQ(paths[0]->orders, std::vector<std::string>{"from 1.00"});
}

TEST_F(TapDirectorTest, ASilentApplicationIsTakenOverPlainly) {
  graph.model.setNodeInfo(20, false);
  const auto built = build();
  connect(0);
  start(built);
  EXPECT_EQ(paths[0]->orders, std::vector<std::string>{"plain"});
}

TEST_F(TapDirectorTest, AGlideThatNeverBeganIsDropped) {
  const auto built = build();
  connect(0);
  start(built);
  EXPECT_TRUE(director.wantsTicks());
  tick(60);
  EXPECT_EQ(paths[0]->orders, (std::vector<std::string>{"from 1.00", "calm", "plain"}));
  EXPECT_FALSE(director.wantsTicks());
}

TEST_F(TapDirectorTest, AStartBeforeTheDeviceIsAliveTakesEffectWhenItIs) {
  const auto built = build();
  EXPECT_EQ(director.start(built.device, built.proc), noErr);
  EXPECT_TRUE(paths[0]->orders.empty());
  connect(0);
  director.moment();
  EXPECT_EQ(paths[0]->orders.size(), 1U);
}

TEST_F(TapDirectorTest, WhatSoundsIsTakenByStreamsThatRunAlreadyAndAtAQuietMoment) {
  const auto built = build();
  EXPECT_FALSE(paths[0]->isAwake) << "before they are linked they would run on any other driver";
  paths[0]->quiet = 0;
  connect(0);
  EXPECT_TRUE(paths[0]->isAwake);
  ASSERT_EQ(director.start(built.device, built.proc), noErr);
  tick(3);
  EXPECT_TRUE(metadata.take().empty());
  EXPECT_TRUE(wakes.empty());
  paths[0]->quiet = 1234;
  director.graphChanged();
  EXPECT_TRUE(metadata.take().empty());
  EXPECT_EQ(wakes, std::vector<std::uint64_t>{1234});
  director.moment();
  EXPECT_FALSE(metadata.take().empty());
}

TEST_F(TapDirectorTest, StreamsThatNeverRunAreNotWaitedForLong) {
  const auto built = build();
  paths[0]->quiet = 0;
  connect(0);
  ASSERT_EQ(director.start(built.device, built.proc), noErr);
  tick(30);
  EXPECT_FALSE(metadata.take().empty());
}

TEST_F(TapDirectorTest, ForASilentApplicationNothingRunsBeforeItPlays) {
  graph.model.setNodeInfo(20, false);
  const auto built = build();
  paths[0]->quiet = 0;
  connect(0);
  EXPECT_FALSE(paths[0]->isAwake);
  ASSERT_EQ(director.start(built.device, built.proc), noErr);
  EXPECT_FALSE(metadata.take().empty());
}

TEST_F(TapDirectorTest, StreamsGoBackOnlyAtUnityAndTheNodesGoOnlyAfterThem) {
  const auto built = live();
  metadata.take();
  end(built, 0.3F);
  EXPECT_EQ(paths[0]->orders, (std::vector<std::string>{"from 1.00", "calm", "stop 0.30"}));
  paths[0]->count = 5;
  tick(3);
  EXPECT_TRUE(metadata.take().empty());
  paths[0]->unity = true;
  tick(1);
  EXPECT_TRUE(metadata.take().empty());
  director.moment();
  EXPECT_EQ(metadata.take().back(), "20 target.object=-");
  EXPECT_FALSE(isGone(0));
  follow();
  EXPECT_TRUE(isGone(0));
  tick(20);
  EXPECT_FALSE(director.wantsTicks());
}

TEST_F(TapDirectorTest, AReleaseWhoseApplicationIsSilentDoesNotWaitForAGlide) {
  const auto built = live();
  end(built, 0.3F);
  tick(40);
  follow();
  EXPECT_TRUE(isGone(0));
}

TEST_F(TapDirectorTest, ANewTapToTheSameOutputAdoptsTheReleasingStreams) {
  const auto first = live();
  end(first, 0.3F);
  metadata.take();
  const auto second = build();
  EXPECT_EQ(paths.size(), 1U);
  start(second);
  EXPECT_EQ(paths[0]->orders.back(), "adopted");
  EXPECT_TRUE(metadata.take().empty());
  tick(50);
  EXPECT_FALSE(isGone(0));
}

TEST_F(TapDirectorTest, AdoptedStreamsOnTheDefaultOfBeforeAreRenewedWithoutWaitingForAnotherEvent) {
  graph.sink(2, "desk");
  const auto first = live();
  end(first, 0.3F);
  makeDefault("desk");
  const auto second = build();
  EXPECT_EQ(paths.size(), 1U);
  start(second);
  EXPECT_EQ(paths[0]->orders.back(), "adopted");
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_EQ(outputs[1], "1002");
}

TEST_F(TapDirectorTest, ANewTapToAnotherOutputTakesTheStreamsFromTheOldAtTheGainInEffect) {
  const auto first = live();
  end(first, 0.3F);
  paths[0]->gain = 0.3F;
  paths[0]->count = 1;
  graph.sink(2, "usb");
  const auto second = build(false, "usb");
  EXPECT_EQ(outputs.back(), "1002");
  connect(1);
  metadata.take();
  start(second);
  EXPECT_EQ(paths[1]->orders, std::vector<std::string>{"from 0.30"});
  EXPECT_EQ(metadata.take().front(), "20 target.object=1110");
  EXPECT_FALSE(isGone(0));
  follow();
  EXPECT_TRUE(isGone(0));
}

TEST_F(TapDirectorTest, AReleaseHoldsForATapThatTakesItsStreamsAndGoesOnIfThatNeverStarts) {
  const auto first = live();
  end(first, 0.3F);
  build(false, "usb");
  EXPECT_EQ(paths[0]->orders.back(), "hold");
  paths[0]->gain = 0.3F;
  tick(260);
  EXPECT_EQ(paths[0]->orders.back(), "stop 0.30");
  paths[0]->unity = true;
  tick(1);
  director.moment();
  follow();
  EXPECT_TRUE(isGone(0));
}

TEST_F(TapDirectorTest, AReleaseThatHoldsForATapGoesOnAtOnceWhenThatTapGoes) {
  const auto first = live();
  end(first, 0.3F);
  const auto second = build(false, "usb");
  paths[0]->gain = 0.3F;
  EXPECT_EQ(director.destroyDevice(second.device), noErr);
  EXPECT_EQ(paths[0]->orders.back(), "stop 0.30");
}

TEST_F(TapDirectorTest, ManyNodesInARowForAnApplicationAreMadeOneByOneAndOnlyTheNewestWishCounts) {
  graph.sink(2, "desk");
  graph.sink(3, "usb");
  graph.sink(4, "tv");
  graph.sink(5, "hall");
  for (const auto* output : {"desk", "usb", "tv", "hall", "desk", "hall"}) {
    const auto built = build(false, output);
    start(built);
    end(built, 1.0F);
  }
  EXPECT_EQ(outputs, (std::vector<std::optional<std::string>>{"1002", "1003", "1004"})) << "a person's go at once";
  const auto last = build(false, "hall");
  start(last);
  EXPECT_EQ(paths.size(), 3U);
  EXPECT_TRUE(director.wantsTicks());
  tick(20);
  ASSERT_EQ(paths.size(), 4U);
  EXPECT_EQ(outputs.back(), "1005");
  connect(3);
  director.moment();
  EXPECT_EQ(metadata.take().front(), "20 target.object=1130") << "as any other";
}

TEST_F(TapDirectorTest, WhileANodeIsPutOffWhatIsHeardStaysAtItsGain) {
  graph.sink(2, "desk");
  graph.sink(3, "usb");
  const auto heard = live();
  for (const auto* output : {"desk", "usb"}) end(build(false, output), 1.0F);
  end(heard, 0.3F);
  build(false, "speakers");
  EXPECT_EQ(paths.size(), 3U);
  EXPECT_EQ(paths[0]->orders.back(), "hold");
}

TEST_F(TapDirectorTest, AnotherApplicationsNodesAreNotPutOff) {
  graph.sink(2, "desk");
  graph.sink(3, "usb");
  graph.client(11, "test.other");
  graph.playback(21, 11);
  for (const auto* output : {"desk", "usb", "speakers"}) build(false, output);
  ASSERT_EQ(paths.size(), 3U);
  Built other;
  const auto tap = tapOf("test.other");
  ASSERT_EQ(director.createTap(tap, other.tap), noErr);
  AggregateDescription device;
  device.followsDefaultOutput = true;
  device.taps = {{tap.uuid.text(), true}};
  ASSERT_EQ(director.createDevice(device, other.device), noErr);
  EXPECT_EQ(paths.size(), 4U);
}

TEST_F(TapDirectorTest, ANodeThatIsLeftBeforeItIsReadyIsTakenUpByTheNextTapToItsOutput) {
  const auto first = build();
  start(first);
  end(first, 1.0F);
  EXPECT_FALSE(isGone(0));
  const auto second = build();
  start(second);
  EXPECT_EQ(paths.size(), 1U);
  connect(0);
  director.moment();
  EXPECT_EQ(paths[0]->orders, std::vector<std::string>{"from 1.00"});
}

TEST_F(TapDirectorTest, WithTheSessionManagerGoneNothingIsPutOffAnyMore) {
  graph.sink(2, "desk");
  graph.sink(3, "usb");
  for (const auto* output : {"desk", "usb", "speakers"}) end(build(false, output), 1.0F);
  const auto last = build(false, "hall");
  start(last);
  EXPECT_EQ(paths.size(), 3U);
  director.suspend();
  tick(40);
  EXPECT_EQ(paths.size(), 3U);
  director.resume();
  EXPECT_EQ(paths.size(), 4U);
}

TEST_F(TapDirectorTest, ADeviceThatWasNeverStartedLeavesNothing) {
  const auto built = build();
  connect(0);
  EXPECT_EQ(director.destroyDevice(built.device), noErr);
  EXPECT_TRUE(isGone(0));
  EXPECT_TRUE(metadata.take().empty());
}

TEST_F(TapDirectorTest, WithTheSessionManagerGoneNoPathStaysAndTheLiveOnesAreRebuilt) {
  live();
  director.suspend();
  EXPECT_TRUE(isGone(0));
  graph.model.clearMetadata();
  graph.model.remove(700);
  makeDefault("speakers");
  director.resume();
  ASSERT_EQ(paths.size(), 2U);
  connect(1);
  director.moment();
  EXPECT_EQ(paths[1]->orders.size(), 1U);
}

TEST_F(TapDirectorTest, ADeviceStoppedWhileTheSessionManagerIsGoneStaysSilent) {
  const auto built = build();
  connect(0);
  start(built);
  director.suspend();
  end(built, 0.3F);
  director.resume();
  EXPECT_EQ(paths.size(), 1U);
}

TEST_F(TapDirectorTest, ADeviceThatGoesWhileTheSessionManagerIsGoneHasNoOutputAskedFor) {
  const auto built = build();
  start(build(false, "usb"));
  director.suspend();
  end(built, 1.0F);
  EXPECT_TRUE(finder.needed.empty());
  director.resume();
  EXPECT_EQ(finder.needed, std::set<Destination>{"usb"});
}

TEST_F(TapDirectorTest, UnknownObjectsAndSecondStartsAreAnsweredWithACode) {
  const auto built = build();
  IOProcID other = 0;
  ASSERT_EQ(director.createProc(built.device, [](const AudioBufferList&, const AudioBufferList&) {}, other), noErr);
  EXPECT_EQ(director.start(built.device, built.proc), noErr);
  EXPECT_EQ(director.start(built.device, built.proc), noErr);
  EXPECT_EQ(director.start(built.device, other), illegalOperationError);
  EXPECT_EQ(director.start(4711, built.proc), badObjectError);
  EXPECT_EQ(director.stop(built.device, 4711, 1.0F), badObjectError);
  EXPECT_EQ(director.createProc(built.device, nullptr, other), illegalOperationError);
  EXPECT_EQ(director.destroyTap(4711), badObjectError);
}

}  // namespace
}  // namespace quillmere::pipewire::test
