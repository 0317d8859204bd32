// Which streams are moved where, what is written for it, and what another mixer's word means.
#include <gtest/gtest.h>

#include "Graph.h"
#include "platform/linux/pipewire/StreamMover.h"

namespace quillmere::pipewire::test {
namespace {

using Lines = std::vector<std::string>;

struct StreamMoverTest : ::testing::Test {
  Graph graph;
  Metadata metadata{graph.model};
  StreamMover mover{graph.model, metadata, Logger(graph.log, "PipeWire")};

  void SetUp() override {
    graph.client(10, "test.player");
    graph.playback(20, 10);
  }
  /// A tap for all streams of the application that ask for nothing, or are bound for a place.
  void claim(const std::string& serial, const Destination& destination = std::nullopt) {
    mover.claim("test.player", std::nullopt, destination, serial);
  }
  /// A tap for an application that is routed to a device.
  void claimRouted(const std::string& serial, const std::string& route, const Destination& destination) {
    mover.claim("test.player", route, destination, serial);
  }
  void echo() {
    for (const auto& [stream, target] : metadata.echo()) mover.onTargetChanged(stream, target);
  }
  /// The stream is linked to the tap that it was sent to.
  void arrive() {
    graph.sink(1, "speakers");
    graph.node(55, "Stream/Input/Audio/Internal", 0);
    claim("1055");
    echo();
    graph.link(700, 20, 55);
    mover.settle();
  }
  void another(GlobalID stream, const std::optional<std::string>& target) {
    graph.model.setMetadata(stream, "target.object", target);
    mover.onTargetChanged(stream, target);
  }
};

TEST_F(StreamMoverTest, AMoveWritesTheTargetAndWipesWhatIsStored) {
  claim("55");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.object=55", "20 target.node=-1", "20 target.node=-"}));
}

TEST_F(StreamMoverTest, SettlingAgainWritesNothing) {
  claim("55");
  echo();
  metadata.take();
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, AStreamThatHasLeftForAnotherDeviceStaysThereThoughNobodyToldOfItsMove) {
  arrive();
  graph.model.remove(700);
  graph.link(701, 20, 1);
  metadata.take();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, AStreamThatHasNotArrivedYetIsGivenBack) {
  graph.sink(1, "speakers");
  graph.node(55, "Stream/Input/Audio/Internal", 0);
  graph.link(701, 20, 1);
  claim("1055");
  echo();
  mover.settle();
  metadata.take();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AStreamWhoseTapHasGoneIsGivenBack) {
  arrive();
  graph.model.remove(700);
  graph.model.remove(55);
  graph.link(701, 20, 1);
  metadata.take();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AStreamThatAppearsLaterIsMovedOnceItsPropertiesAreKnown) {
  claim("55");
  metadata.take();
  graph.model.updateNode(21, {{"media.class", "Stream/Output/Audio"}, {"client.id", "10"}});
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  graph.model.setNodeInfo(21, false);
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "21 target.object=55");
}

TEST_F(StreamMoverTest, AStreamOfThePulseAudioServerIsMovedOnlyOnceTheServerHasAnsweredItsClient) {
  claim("55");
  metadata.take();
  graph.playback(21, 10, {{"client.api", "pipewire-pulse"}});
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  graph.model.updateNode(21, {{"pulse.attr.tlength", "384000"}});
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "21 target.object=55");
}

TEST_F(StreamMoverTest, AfterARestartASerialThatOnceWasOursIsTheUsersChoice) {
  claim("55");
  mover.forget();
  metadata.loseEcho();
  claim("40");
  echo();
  metadata.take();
  another(20, "55");
  metadata.take();
  EXPECT_EQ(mover.destinations("test.player", std::nullopt), (std::set<Destination>{"55"}));
  claim("41");
  EXPECT_EQ(metadata.take(), Lines{});
}

/// A stream ends and another is given its id before anyone has looked.
struct AStreamInTheIDOfAnother : StreamMoverTest {
  void begin() {
    claim("55");
    echo();
    metadata.take();
  }
  void replace(Properties more = {}) {
    graph.model.remove(20);
    graph.playback(20, 10, std::move(more), "2020");
  }
};

TEST_F(AStreamInTheIDOfAnother, IsMovedToo) {
  begin();
  replace();
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(AStreamInTheIDOfAnother, IsMovedThoughTheEchoForTheOtherNeverCame) {
  claim("55");
  metadata.take();
  metadata.loseEcho();
  replace();
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(AStreamInTheIDOfAnother, WaitsForThePulseAudioServersAnswerOnItsOwn) {
  begin();
  replace({{"client.api", "pipewire-pulse"}});
  // The target of the one that has ended is wiped.
  another(20, std::nullopt);
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  graph.model.updateNode(20, {{"pulse.attr.tlength", "384000"}});
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(AStreamInTheIDOfAnother, IsNotGivenBackWhereTheOtherCameFrom) {
  graph.model.setMetadata(20, "target.object", "77");
  begin();
  replace();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, RecordingsAndOtherApplicationsAreNotMoved) {
  graph.client(11, "test.other");
  graph.playback(21, 11);
  graph.recording(22, 10);
  claim("55");
  for (const auto& line : metadata.take()) EXPECT_TRUE(line.starts_with("20 ")) << line;
}

TEST_F(StreamMoverTest, ReleaseDeletesTheTarget) {
  claim("55");
  echo();
  metadata.take();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AChoiceTheUserHadMadeIsKeptInStoreAndRestored) {
  graph.sink(30, "usb");
  another(20, "1030");
  graph.model.setMetadata(20, "target.node", "30");
  claim("55", "1030");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.object=55", "20 target.node=-1", "20 target.node=30"}));
  echo();
  mover.release("test.player", "1030");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=30", "20 target.object=1030"}));
}

TEST_F(StreamMoverTest, FromOneTapToAnotherTheStreamIsMovedDirectlyAndTheOriginalIsKept) {
  another(20, "1030");
  claim("55", "1030");
  echo();
  claim("66", "1030");
  echo();
  metadata.take();
  mover.release("test.player", "1030");
  EXPECT_EQ(metadata.take().back(), "20 target.object=1030");
}

TEST_F(StreamMoverTest, AStreamIsBoundForWhereItAsksToBe) {
  graph.sink(30, "usb");
  EXPECT_EQ(mover.destinations("test.player", std::nullopt), (std::set<Destination>{std::nullopt}));
  graph.playback(21, 10, {{"target.object", "usb"}});
  graph.playback(22, 10, {{"node.target", "30"}});
  graph.playback(23, 10, {{"target.object", "-1"}});
  graph.playback(24, 10, {{"target.object", "usb"}});
  graph.model.setMetadata(24, "target.node", "-1");
  graph.playback(25, 10, {{"target.object", "usb"}});
  graph.model.setMetadata(25, "target.object", "speakers");
  EXPECT_EQ(mover.destinations("test.player", std::nullopt),
            (std::set<Destination>{std::nullopt, "usb", "1030", "speakers"}));
  EXPECT_EQ(mover.destinations("test.player", "desk"), (std::set<Destination>{"desk"})) << "a route is for all";
}

TEST_F(StreamMoverTest, AStreamThatIsBoundForAPlaceWithoutATapIsLeftWhereItIs) {
  graph.playback(21, 10, {{"target.object", "usb"}});
  claim("55");
  for (const auto& line : metadata.take()) EXPECT_TRUE(line.starts_with("20 ")) << line;
  claim("66", "usb");
  EXPECT_EQ(metadata.take().front(), "21 target.object=66");
}

TEST_F(StreamMoverTest, AMoveByAnotherMixerIsTakenBackAtOnceAndFollowedOnceATapStandsThere) {
  arrive();
  metadata.take();
  another(20, "1001");
  EXPECT_EQ(metadata.take().front(), "20 target.object=1055") << "never at its full level on the way";
  EXPECT_EQ(mover.destinations("test.player", std::nullopt), (std::set<Destination>{"1001"}));
  echo();
  claim("66", "1001");
  EXPECT_EQ(metadata.take().front(), "20 target.object=66");
  mover.release("test.player", "1001");
  EXPECT_EQ(metadata.take().back(), "20 target.object=1001") << "and there it is left";
}

TEST_F(StreamMoverTest, AMoveByAnotherMixerCountsMoreThanARoute) {
  graph.sink(1, "speakers");
  graph.sink(30, "usb");
  graph.node(55, "Stream/Input/Audio/Internal", 0);
  claimRouted("1055", "usb", "usb");
  echo();
  graph.link(700, 20, 55);
  mover.settle();
  another(20, "-1");
  EXPECT_EQ(mover.destinations("test.player", "usb"), (std::set<Destination>{std::nullopt})) << "to the default";
  another(20, "1001");
  EXPECT_EQ(mover.destinations("test.player", "usb"), (std::set<Destination>{"1001"}));
  another(20, "1030");
  EXPECT_EQ(mover.destinations("test.player", "usb"), (std::set<Destination>{"usb"})) << "the route by another name";
  another(20, "1001");
  mover.forgetWishes("test.player");
  EXPECT_EQ(mover.destinations("test.player", "usb"), (std::set<Destination>{"usb"})) << "routed anew";
}

TEST_F(StreamMoverTest, WhatIsRestoredForANewStreamDoesNotCountMoreThanARoute) {
  claimRouted("55", "usb", "usb");
  echo();
  another(20, "1001");
  EXPECT_EQ(mover.destinations("test.player", "usb"), (std::set<Destination>{"usb"}));
  EXPECT_EQ(mover.destinations("test.player", std::nullopt), (std::set<Destination>{"1001"}));
}

TEST_F(StreamMoverTest, WhatIsRestoredForANewStreamByTheOlderKeyIsWhereItAsksToBe) {
  graph.sink(30, "usb");
  claim("55");
  echo();
  graph.model.setMetadata(20, "target.node", "30");
  mover.onNodeTargetChanged(20, "30");
  EXPECT_EQ(mover.destinations("test.player", std::nullopt), (std::set<Destination>{"1030"}));
}

TEST_F(StreamMoverTest, AMoveThatIsTakenBackBelongsWhereTheStreamAsks) {
  arrive();
  another(20, "1001");
  claim("66", "1001");
  echo();
  metadata.take();
  // Both keys, as the pulse server writes both.
  graph.model.setMetadata(20, "target.node", std::nullopt);
  another(20, std::nullopt);
  EXPECT_EQ(metadata.take().front(), "20 target.object=1055");
}

TEST_F(StreamMoverTest, AProgramThatInsistsIsLetHaveItsWay) {
  arrive();
  for (int i = 0; i < 25; ++i) {
    another(20, "1001");
    echo();
  }
  metadata.take();
  another(20, "1001");
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  EXPECT_TRUE(graph.log.lines.back().find("insists") != std::string::npos) << graph.log.lines.back();
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, EchoesOfAQuickReleaseAndClaimAreNotTakenForAnotherMixers) {
  claim("55");
  mover.release("test.player", std::nullopt);
  claim("66");
  metadata.take();
  echo();
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  mover.release("test.player", std::nullopt);
  EXPECT_EQ(metadata.take().back(), "20 target.object=-");
}

TEST_F(StreamMoverTest, AStreamThatMustNotBeMovedIsLoggedOnce) {
  graph.playback(21, 10, {{"node.dont-move", "true"}});
  claim("55");
  mover.settle();
  for (const auto& line : metadata.take()) EXPECT_TRUE(line.starts_with("20 ")) << line;
  EXPECT_EQ(graph.log.lines.size(), 1U);
}

TEST_F(StreamMoverTest, AnIdThatIsGivenAgainIsAnotherStream) {
  claim("55");
  echo();
  metadata.take();
  graph.model.remove(20);
  mover.settle();
  graph.playback(20, 10);
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(StreamMoverTest, AfterTheSessionManagerHasGoneAClaimWritesAnew) {
  claim("55");
  echo();
  metadata.take();
  mover.forget();
  graph.model.clearMetadata();
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  claim("66");
  EXPECT_EQ(metadata.take().front(), "20 target.object=66");
}

}  // namespace
}  // namespace quillmere::pipewire::test
