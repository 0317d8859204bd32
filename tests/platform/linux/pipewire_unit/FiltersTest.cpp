// What is a filter's and what is an application's, by the properties that real filters and players have.
#include <gtest/gtest.h>

#include "Graph.h"
#include "platform/linux/pipewire/AudioSnapshot.h"
#include "platform/linux/pipewire/LinkGroup.h"
#include "platform/linux/pipewire/StreamMover.h"

namespace quillmere::pipewire::test {
namespace {

const Properties group{{"node.link-group", "loopback-1-18"}, {"node.virtual", "true"}};

struct Filters : ::testing::Test {
  Graph graph;
  ObjectIDs ids;
  [[nodiscard]] std::vector<ProcessSnapshot> processes() { return takeSnapshot(graph.model, {}, ids).processes; }
  [[nodiscard]] std::vector<std::string> names() {
    std::vector<std::string> found;
    for (const auto& process : processes()) found.push_back(process.identifier);
    return found;
  }
  void filterNode(GlobalID id, const std::string& mediaClass, GlobalID client) {
    graph.node(id, mediaClass, client, group);
  }
};

using Names = std::vector<std::string>;

TEST_F(Filters, ASinkWithAStreamBehindItIsNoApplication) {
  graph.client(10, "pw-loopback");
  filterNode(20, "Audio/Sink", 10);
  filterNode(21, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, TwoStreamsThatAreOneLoopbackAreNoApplication) {
  graph.client(10, "pw-loopback");
  filterNode(20, "Stream/Input/Audio", 10);
  filterNode(21, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, AVirtualMicrophoneThatRecordsAnotherOneIsNoApplication) {
  graph.client(10, "pw-loopback");
  filterNode(20, "Stream/Input/Audio", 10);
  filterNode(21, "Audio/Source", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, TheFourNodesOfAnEchoCancellerAreNoApplication) {
  graph.client(10, "pipewire");
  filterNode(20, "Stream/Input/Audio", 10);
  filterNode(21, "Audio/Source", 10);
  filterNode(22, "Audio/Sink", 10);
  filterNode(23, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, TheStreamsOfACombinedOutputAreNoApplication) {
  graph.client(10, "pipewire");
  filterNode(20, "Audio/Sink", 10);
  for (const GlobalID stream : {21U, 22U, 23U}) filterNode(stream, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, TheOtherSideMayBeAnotherClientsOrHiddenOrLinkedByHand) {
  graph.client(10, "one");
  graph.client(11, "other");
  for (const auto* mediaClass :
       {"Audio/Sink", "Audio/Duplex", "Audio/Sink/Internal", "Stream/Input/Audio/Internal", ""}) {
    filterNode(20, "Stream/Output/Audio", 10);
    filterNode(21, mediaClass, 11);
    EXPECT_EQ(names(), Names{}) << mediaClass;
    graph.model.remove(20);
    graph.model.remove(21);
  }
}

TEST_F(Filters, AnotherStreamOfTheSameClientIsAnApplication) {
  graph.client(10, "equaliser");
  filterNode(20, "Audio/Sink", 10);
  filterNode(21, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{});
  graph.playback(22, 10);
  EXPECT_EQ(names(), Names{"equaliser"});
  graph.model.setNodeInfo(22, false);
  // The filter goes on playing: nothing of the application's own.
  EXPECT_FALSE(processes()[0].isRunningOutput);
}

TEST_F(Filters, OnlyTheApplicationsOwnStreamIsMoved) {
  graph.client(10, "equaliser");
  filterNode(20, "Audio/Sink", 10);
  filterNode(21, "Stream/Output/Audio", 10);
  graph.playback(22, 10);
  Metadata metadata{graph.model};
  StreamMover mover{graph.model, metadata, Logger(graph.log, "PipeWire")};
  mover.claim("equaliser", {}, {}, "5000");
  const auto lines = metadata.take();
  EXPECT_EQ(lines.front(), "22 target.object=5000");
  for (const auto& line : lines) EXPECT_FALSE(line.starts_with("21 ")) << line;
  EXPECT_TRUE(mover.hasRunningStream("equaliser", {}, {}));
  graph.model.setNodeInfo(22, false);
  EXPECT_FALSE(mover.hasRunningStream("equaliser", {}, {}));
}

TEST_F(Filters, TheSideThatComesFirstIsNoApplicationMeanwhile) {
  graph.client(10, "pw-loopback");
  graph.model.updateNode(21, {{"media.class", "Stream/Output/Audio"}, {"client.id", "10"}, {"node.link-group", "a"}});
  graph.model.setNodeInfo(21, false);
  EXPECT_EQ(names(), Names{});
  graph.node(20, "Audio/Sink", 10, {{"node.link-group", "a"}});
  graph.model.setNodeInfo(21, true);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, AStreamThatRanAlreadyWhenItsOtherSideWasToldIsNoApplicationAnyMore) {
  graph.client(10, "pw-loopback");
  filterNode(21, "Stream/Output/Audio", 10);
  EXPECT_EQ(names(), Names{"pw-loopback"});
  filterNode(20, "Audio/Sink", 10);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, AFilterWhoseSinkGoesFirstIsNoApplicationForAMoment) {
  graph.client(10, "pw-loopback");
  filterNode(20, "Audio/Sink", 10);
  filterNode(21, "Stream/Output/Audio", 10);
  graph.model.remove(20);
  EXPECT_EQ(names(), Names{});
  graph.model.remove(21);
  EXPECT_EQ(names(), Names{});
}

TEST_F(Filters, AnApplicationThatHasPlayedStaysWhenItOpensAFilter) {
  graph.client(10, "equaliser");
  graph.playback(22, 10);
  graph.model.remove(22);
  filterNode(21, "Stream/Output/Audio", 10);
  filterNode(20, "Audio/Sink", 10);
  ASSERT_EQ(names(), Names{"equaliser"});
  EXPECT_TRUE(processes()[0].hasPlayed);
}

TEST_F(Filters, APlayerWithALinkGroupOfItsOwnIsAnApplicationOnceItRuns) {
  graph.client(10, "player");
  graph.playback(21, 10, {{"node.link-group", "mine"}});
  graph.model.setNodeInfo(21, false);
  EXPECT_EQ(names(), Names{"player"});
  EXPECT_TRUE(graph.model.countsAsStream(*graph.model.node(21)));
}

TEST_F(Filters, TwoPlayersOfOneLinkGroupAreApplications) {
  graph.client(10, "player");
  graph.playback(21, 10, group);
  graph.playback(22, 10, group);
  EXPECT_EQ(names(), Names{"player"});
}

TEST_F(Filters, APlayerThatSynchronisesItsNodesIsAnApplication) {
  graph.client(10, "player");
  graph.playback(21, 10, {{"node.group", "studio"}, {"node.virtual", "true"}, {"node.passive", "true"}});
  graph.recording(22, 10, {{"node.group", "studio"}});
  EXPECT_EQ(names(), Names{"player"});
}

TEST_F(Filters, AProgramThatPlaysAndRecordsIsAnApplication) {
  graph.client(10, "browser");
  graph.playback(21, 10);
  graph.recording(22, 10);
  EXPECT_EQ(names(), Names{"browser"});
}

TEST_F(Filters, AProgramWithASinkAndAStreamThatHaveNothingToDoWithEachOtherIsAnApplication) {
  graph.client(10, "player");
  filterNode(20, "Audio/Sink", 10);
  graph.playback(21, 10, {{"node.link-group", "another"}});
  EXPECT_EQ(names(), Names{"player"});
}

TEST(LinkGroup, NamesAreComparedOneByOne) {
  EXPECT_TRUE(shareLinkGroup("a", "a"));
  EXPECT_TRUE(shareLinkGroup("a,b", "c, b"));
  EXPECT_TRUE(shareLinkGroup(" a ,b", "a"));
  EXPECT_FALSE(shareLinkGroup("a,b", "ab"));
  EXPECT_FALSE(shareLinkGroup("", ""));
  EXPECT_FALSE(shareLinkGroup(",", ",,"));
  EXPECT_FALSE(shareLinkGroup(" ", " "));
}

}  // namespace
}  // namespace quillmere::pipewire::test
