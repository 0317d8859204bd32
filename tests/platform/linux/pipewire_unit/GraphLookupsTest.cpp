// What is looked up in the graph model at every event: found while it is there, and never under what it was called
// before.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Graph.h"

namespace quillmere::pipewire::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct GraphLookups : testing::Test, Graph {
  void port(GlobalID id, GlobalID node, const std::string& channel) {
    model.updatePort(id, {{"node.id", std::to_string(node)}, {"audio.channel", channel}});
  }
  std::vector<std::string> channelsOf(GlobalID node) const {
    std::vector<std::string> channels;
    for (const auto& each : model.portsOf(node)) channels.push_back(each.channel);
    return channels;
  }
  void tellDefault(const std::optional<std::string>& value) { model.setMetadata(0, "default.audio.sink", value); }
};

TEST_F(GraphLookups, ANodeIsFoundByItsSerialWhileItIsThere) {
  playback(10, 0, {}, "77");
  EXPECT_EQ(model.nodeIDBySerial("77"), 10U);
  EXPECT_EQ(model.nodeBySerial("77"), model.node(10));
  model.remove(10);
  EXPECT_EQ(model.nodeIDBySerial("77"), std::nullopt);
}

TEST_F(GraphLookups, AnIDThatIsGivenAgainBelongsToTheNewSerialAlone) {
  playback(10, 0, {}, "77");
  playback(10, 0, {}, "78");
  EXPECT_EQ(model.nodeIDBySerial("77"), std::nullopt);
  EXPECT_EQ(model.nodeIDBySerial("78"), 10U);
}

TEST_F(GraphLookups, ANodeWithoutASerialIsFoundByNone) {
  model.updateNode(10, {{"media.class", "Audio/Sink"}});
  EXPECT_EQ(model.nodeIDBySerial(""), std::nullopt);
  EXPECT_EQ(model.nodeBySerial(""), nullptr);
}

TEST_F(GraphLookups, PortsAreFoundByTheirNodeInTheOrderOfTheirIDs) {
  port(31, 10, "FR");
  port(30, 10, "FL");
  port(40, 11, "MONO");
  EXPECT_THAT(channelsOf(10), ElementsAre("FL", "FR"));
  EXPECT_THAT(channelsOf(11), ElementsAre("MONO"));
  model.remove(30);
  EXPECT_THAT(channelsOf(10), ElementsAre("FR"));
  model.remove(31);
  EXPECT_THAT(channelsOf(10), IsEmpty());
}

TEST_F(GraphLookups, APortWhoseIDIsGivenToAnotherNodesLeavesItsOld) {
  port(30, 10, "FL");
  port(30, 11, "FR");
  EXPECT_THAT(channelsOf(10), IsEmpty());
  EXPECT_THAT(channelsOf(11), ElementsAre("FR"));
}

TEST_F(GraphLookups, TheDefaultOutputIsTheOneThatWasToldLast) {
  sink(50, "desk");
  sink(51, "phones");
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
  tellDefault(R"({"name":"phones"})");
  EXPECT_EQ(model.outputSerial(std::nullopt), "1051");
  tellDefault(R"({"name":"desk"})");
  EXPECT_EQ(model.outputSerial(std::nullopt), "1050");
  tellDefault(std::nullopt);
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
}

TEST_F(GraphLookups, ADefaultThatCanNotBeReadLeavesTheOneBefore) {
  sink(50, "desk");
  tellDefault("{");
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
  tellDefault(R"({"name":"desk"})");
  for (const auto* broken : {"{\"name\":", "{}", "7", R"({"name":7})", ""}) {
    tellDefault(broken);
    EXPECT_EQ(model.outputSerial(std::nullopt), "1050") << broken;
  }
  tellDefault(std::nullopt);
  EXPECT_EQ(model.outputSerial(std::nullopt), "") << "a word that is taken back is";
}

TEST_F(GraphLookups, WithTheMetadataTheDefaultOutputGoes) {
  sink(50, "desk");
  tellDefault(R"({"name":"desk"})");
  model.clearMetadata();
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
  tellDefault(R"({"name":"desk"})");
  model.setMetadata(0, "", std::nullopt);
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
}

TEST_F(GraphLookups, AnOutputIsFoundByItsNameWhileItIsThereAndFirstOfItsName) {
  sink(52, "desk");
  sink(50, "desk");
  playback(60, 0, {{"node.name", "desk"}});
  EXPECT_EQ(model.outputSerial("desk"), "1052") << "the one that came first";
  model.remove(52);
  EXPECT_EQ(model.outputSerial("desk"), "1050");
  model.remove(50);
  EXPECT_EQ(model.outputSerial("desk"), "") << "a stream of that name is no output";
}

TEST_F(GraphLookups, NothingOfAConnectionThatHasEndedIsFound) {
  sink(50, "desk");
  port(30, 50, "FL");
  tellDefault(R"({"name":"desk"})");
  model.clear();
  EXPECT_EQ(model.nodeIDBySerial("1050"), std::nullopt);
  EXPECT_THAT(channelsOf(50), IsEmpty());
  EXPECT_EQ(model.outputSerial("desk"), "");
  sink(51, "desk");
  EXPECT_EQ(model.outputSerial(std::nullopt), "");
}

}  // namespace
}  // namespace quillmere::pipewire::test
