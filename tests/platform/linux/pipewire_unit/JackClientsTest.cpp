// Clients of JACK's interface: nodes without a class whose links say what they do.
#include <gtest/gtest.h>

#include "Graph.h"
#include "platform/linux/pipewire/AudioSnapshot.h"
#include "platform/linux/pipewire/StreamMover.h"

namespace quillmere::pipewire::test {
namespace {

struct JackClients : ::testing::Test {
  static constexpr GlobalID client = 10;
  static constexpr GlobalID jack = 20;
  static constexpr GlobalID output = 30;
  static constexpr GlobalID microphone = 31;
  Graph graph;
  ObjectIDs ids;

  JackClients() {
    graph.sink(output, "output");
    graph.node(microphone, "Audio/Source", 0);
    graph.client(client, "", {{"application.name", "Synth"}, {"application.process.binary", "synth"}});
    graph.jack(jack, client);
  }
  [[nodiscard]] std::vector<ProcessSnapshot> processes() { return takeSnapshot(graph.model, {}, ids).processes; }
};

TEST_F(JackClients, OneThatIsLinkedToNothingIsNoApplication) { EXPECT_TRUE(processes().empty()); }

TEST_F(JackClients, OneThatIsLinkedToAnOutputPlays) {
  graph.link(40, jack, output);
  ASSERT_EQ(processes().size(), 1U);
  EXPECT_EQ(processes()[0].identifier, "synth");
  EXPECT_EQ(processes()[0].displayName, "Synth");
  EXPECT_TRUE(processes()[0].hasPlayed);
  EXPECT_TRUE(processes()[0].isRunningOutput);
  EXPECT_FALSE(processes()[0].isRunningInput);
}

TEST_F(JackClients, OneWhoseLinksAreKnownBeforeItselfPlays) {
  graph.link(41, 21, output);
  graph.jack(21, client);
  EXPECT_EQ(processes().size(), 1U);
}

TEST_F(JackClients, OneWhoseLastLinkToAnOutputIsGoneIsSilentAndStays) {
  graph.link(40, jack, output);
  graph.link(41, jack, output);
  graph.model.remove(40);
  EXPECT_TRUE(processes()[0].isRunningOutput);
  graph.model.remove(41);
  EXPECT_FALSE(processes()[0].isRunningOutput);
  EXPECT_TRUE(processes()[0].hasPlayed);
}

TEST_F(JackClients, OneThatIsSuspendedPlaysNot) {
  graph.link(40, jack, output);
  graph.model.setNodeInfo(jack, false);
  EXPECT_FALSE(processes()[0].isRunningOutput);
}

TEST_F(JackClients, OneThatPlaysIntoAnotherPlaysNot) {
  graph.client(11, "mixer");
  graph.jack(21, 11);
  graph.link(40, jack, 21);
  graph.link(41, 21, output);
  const auto found = processes();
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].identifier, "mixer");
}

TEST_F(JackClients, OneOnTheMicrophoneRunsInput) {
  graph.link(40, microphone, jack);
  ASSERT_EQ(processes().size(), 1U);
  EXPECT_TRUE(processes()[0].isRunningInput);
  EXPECT_FALSE(processes()[0].hasPlayed);
}

TEST_F(JackClients, OneThatRecordsAMonitorRunsNoInput) {
  graph.link(40, output, jack);
  EXPECT_FALSE(processes()[0].isRunningInput);
}

TEST_F(JackClients, OneBehindAnotherOnTheMicrophoneRunsInput) {
  graph.client(11, "call");
  graph.recording(22, 11);
  graph.link(40, microphone, jack);
  graph.link(41, jack, 22);
  EXPECT_TRUE(processes()[1].isRunningInput);
}

TEST_F(JackClients, OneOfOursIsNoApplication) {
  graph.jack(21, client, {{"node.name", "app.quillmere.something"}});
  graph.link(40, 21, output);
  EXPECT_TRUE(processes().empty());
}

TEST_F(JackClients, ANodeOfAnotherKindWithoutAClassIsNoApplication) {
  graph.node(21, "", client, {{"media.role", "DSP"}, {"media.category", "Filter"}});
  graph.link(40, 21, output);
  EXPECT_TRUE(processes().empty());
}

TEST_F(JackClients, TheSessionManagerIsNotAskedToMoveThem) {
  graph.link(40, jack, output);
  Metadata metadata{graph.model};
  StreamMover mover{graph.model, metadata, Logger(graph.log, "PipeWire")};
  mover.claim("synth", {}, {}, "5000");
  EXPECT_TRUE(metadata.take().empty());
}

}  // namespace
}  // namespace quillmere::pipewire::test
