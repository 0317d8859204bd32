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
  void echo() {
    for (const auto& [stream, target] : metadata.echo()) mover.onTargetChanged(stream, target);
  }
  /// The stream is linked to the tap that it was sent to.
  void arrive() {
    graph.sink(1, "speakers");
    graph.node(55, "Stream/Input/Audio/Internal", 0);
    mover.claim("test.player", "1055");
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
  mover.claim("test.player", "55");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.object=55", "20 target.node=-1", "20 target.node=-"}));
}

TEST_F(StreamMoverTest, SettlingAgainWritesNothing) {
  mover.claim("test.player", "55");
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
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, AStreamThatHasNotArrivedYetIsGivenBack) {
  graph.sink(1, "speakers");
  graph.node(55, "Stream/Input/Audio/Internal", 0);
  graph.link(701, 20, 1);
  mover.claim("test.player", "1055");
  echo();
  mover.settle();
  metadata.take();
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AStreamWhoseTapHasGoneIsGivenBack) {
  arrive();
  graph.model.remove(700);
  graph.model.remove(55);
  graph.link(701, 20, 1);
  metadata.take();
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AStreamThatAppearsLaterIsMovedOnceItsPropertiesAreKnown) {
  mover.claim("test.player", "55");
  metadata.take();
  graph.model.updateNode(21, {{"media.class", "Stream/Output/Audio"}, {"client.id", "10"}});
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  graph.model.setNodeInfo(21, false);
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "21 target.object=55");
}

TEST_F(StreamMoverTest, AStreamOfThePulseAudioServerIsMovedOnlyOnceTheServerHasAnsweredItsClient) {
  mover.claim("test.player", "55");
  metadata.take();
  graph.playback(21, 10, {{"client.api", "pipewire-pulse"}});
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  graph.model.updateNode(21, {{"pulse.attr.tlength", "384000"}});
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "21 target.object=55");
}

TEST_F(StreamMoverTest, AfterARestartASerialThatOnceWasOursIsTheUsersChoice) {
  mover.claim("test.player", "55");
  mover.forget();
  metadata.loseEcho();
  mover.claim("test.player", "40");
  echo();
  metadata.take();
  another(20, "55");
  mover.claim("test.player", "41");
  EXPECT_EQ(metadata.take(), Lines{});
}

/// A stream ends and another is given its id before anyone has looked.
struct AStreamInTheIDOfAnother : StreamMoverTest {
  void begin() {
    mover.claim("test.player", "55");
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
  mover.claim("test.player", "55");
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
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, RecordingsAndOtherApplicationsAreNotMoved) {
  graph.client(11, "test.other");
  graph.playback(21, 11);
  graph.recording(22, 10);
  mover.claim("test.player", "55");
  for (const auto& line : metadata.take()) EXPECT_TRUE(line.starts_with("20 ")) << line;
}

TEST_F(StreamMoverTest, ReleaseDeletesTheTarget) {
  mover.claim("test.player", "55");
  echo();
  metadata.take();
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=-", "20 target.object=-"}));
}

TEST_F(StreamMoverTest, AChoiceTheUserHadMadeIsKeptInStoreAndRestored) {
  graph.sink(30, "usb");
  another(20, "1030");
  graph.model.setMetadata(20, "target.node", "30");
  mover.claim("test.player", "55");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.object=55", "20 target.node=-1", "20 target.node=30"}));
  echo();
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), (Lines{"20 target.node=30", "20 target.object=1030"}));
}

TEST_F(StreamMoverTest, FromOneTapToAnotherTheStreamIsMovedDirectlyAndTheOriginalIsKept) {
  another(20, "1030");
  mover.claim("test.player", "55");
  echo();
  mover.claim("test.player", "66");
  echo();
  metadata.take();
  mover.release("test.player");
  EXPECT_EQ(metadata.take().back(), "20 target.object=1030");
}

TEST_F(StreamMoverTest, AMoveByAnotherMixerIsLeftAloneUntilItIsTakenBack) {
  mover.claim("test.player", "55");
  echo();
  metadata.take();
  another(20, "1030");
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  another(20, std::nullopt);
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(StreamMoverTest, AStreamThatWasLeftAloneIsNotTouchedByTheRelease) {
  mover.claim("test.player", "55");
  echo();
  another(20, "1030");
  metadata.take();
  mover.release("test.player");
  EXPECT_EQ(metadata.take(), Lines{});
}

TEST_F(StreamMoverTest, EchoesOfAQuickReleaseAndClaimAreNotTakenForAnotherMixers) {
  mover.claim("test.player", "55");
  mover.release("test.player");
  mover.claim("test.player", "66");
  metadata.take();
  echo();
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  mover.release("test.player");
  EXPECT_EQ(metadata.take().back(), "20 target.object=-");
}

TEST_F(StreamMoverTest, AStreamThatMustNotBeMovedIsLoggedOnce) {
  graph.playback(21, 10, {{"node.dont-move", "true"}});
  mover.claim("test.player", "55");
  mover.settle();
  for (const auto& line : metadata.take()) EXPECT_TRUE(line.starts_with("20 ")) << line;
  EXPECT_EQ(graph.log.lines.size(), 1U);
}

TEST_F(StreamMoverTest, AnIdThatIsGivenAgainIsAnotherStream) {
  mover.claim("test.player", "55");
  echo();
  metadata.take();
  graph.model.remove(20);
  mover.settle();
  graph.playback(20, 10);
  mover.settle();
  EXPECT_EQ(metadata.take().front(), "20 target.object=55");
}

TEST_F(StreamMoverTest, AfterTheSessionManagerHasGoneAClaimWritesAnew) {
  mover.claim("test.player", "55");
  echo();
  metadata.take();
  mover.forget();
  graph.model.clearMetadata();
  mover.settle();
  EXPECT_EQ(metadata.take(), Lines{});
  mover.claim("test.player", "66");
  EXPECT_EQ(metadata.take().front(), "20 target.object=66");
}

}  // namespace
}  // namespace quillmere::pipewire::test
