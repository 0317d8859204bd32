// Whether a microphone is behind what is recorded, through everything that may stand between.
#include "platform/linux/pipewire/Microphone.h"

#include <gtest/gtest.h>

#include "Graph.h"

namespace quillmere::pipewire::test {
namespace {

struct Microphones : ::testing::Test {
  static constexpr GlobalID recorder = 20;
  static constexpr GlobalID microphone = 30;
  static constexpr GlobalID card = 31;
  static constexpr GlobalID player = 32;
  Graph graph;
  GlobalID nextLink = 700;

  Microphones() {
    graph.client(10, "test.recorder");
    graph.client(11, "test.player");
    graph.recording(recorder, 10);
    graph.node(microphone, "Audio/Source", 0, {{"device.id", "50"}});
    graph.sink(card, "card", {{"device.id", "50"}});
    graph.playback(player, 11);
  }
  void link(GlobalID from, GlobalID to, GlobalID port = 900) { graph.link(nextLink++, from, to, port); }
  void filterNode(GlobalID id, const std::string& mediaClass, const std::string& group = "filter") {
    graph.node(id, mediaClass, 11, {{"node.link-group", group}});
  }
  [[nodiscard]] bool isRecorded() const { return recordsAMicrophone(graph.model, recorder); }
};

TEST_F(Microphones, AnUnlinkedRecorderRecordsNone) { EXPECT_FALSE(isRecorded()); }

TEST_F(Microphones, AMicrophoneIsOne) {
  link(microphone, recorder);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, AnApplicationThatIsRecordedIsNone) {
  link(player, recorder);
  EXPECT_FALSE(isRecorded());
}

TEST_F(Microphones, AnApplicationBesideAMicrophoneChangesNothing) {
  link(player, recorder);
  link(microphone, recorder);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, TheMonitorOfACardIsNoneEvenIfAMicrophonePlaysOnIt) {
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Stream/Output/Audio");
  link(microphone, 40);
  link(41, card);
  link(card, recorder);
  EXPECT_FALSE(isRecorded());
}

TEST_F(Microphones, TheStreamThatAsksForAMonitorCountsByItsLinks) {
  graph.recording(recorder, 10, {{"stream.capture.sink", "true"}});
  link(card, recorder);
  EXPECT_FALSE(isRecorded());
  // Somebody moved it.
  link(microphone, recorder);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, AVirtualMicrophoneIsOneHoweverItsPortsAreCalled) {
  graph.node(33, "Audio/Source/Virtual", 0);
  graph.model.updatePort(800, {{"port.monitor", "true"}});
  link(player, 33);
  link(33, recorder, 800);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, AnEchoCancellerHasTheMicrophoneBehindIt) {
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Audio/Source");
  filterNode(42, "Audio/Sink");
  filterNode(43, "Stream/Output/Audio");
  link(player, 42);
  link(41, recorder);
  EXPECT_FALSE(isRecorded());
  link(microphone, 40);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, WhatAnEchoCancellerPlaysIsNone) {
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Audio/Source");
  filterNode(42, "Audio/Sink");
  filterNode(43, "Stream/Output/Audio");
  link(microphone, 40);
  link(player, 42);
  link(43, recorder);
  EXPECT_FALSE(isRecorded());
}

TEST_F(Microphones, ALoopbackOfAMonitorIsNoneAndOneOfAMicrophoneIsOne) {
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Audio/Source");
  link(41, recorder);
  link(card, 40);
  EXPECT_FALSE(isRecorded());
  link(microphone, 40);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, FiltersInARowAreFollowed) {
  for (GlobalID i = 0; i < 20; ++i) {
    const auto group = "filter-" + std::to_string(i);
    filterNode(100 + 2 * i, "Audio/Source", group);
    filterNode(101 + 2 * i, "Stream/Input/Audio", group);
    link(100 + 2 * i, i == 0 ? recorder : 99 + 2 * i);
  }
  EXPECT_FALSE(isRecorded());
  link(microphone, 139);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, TheMonitorOfAVirtualOutputIsWhatPlaysIntoIt) {
  graph.sink(33, "null");
  link(33, recorder);
  link(player, 33);
  EXPECT_FALSE(isRecorded());
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Stream/Output/Audio");
  link(microphone, 40);
  link(41, 33);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, WhatAnotherRecorderHearsIsFollowed) {
  graph.recording(34, 11);
  link(34, recorder);
  EXPECT_FALSE(isRecorded());
  link(microphone, 34);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, NodesThatAreLinkedByHandAreFollowedEvenIfNothingElseIsKnownOfThem) {
  link(60, 61);
  link(61, recorder);
  EXPECT_FALSE(isRecorded());
  link(microphone, 60);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, ATapThatIsRecordedIsNone) {
  graph.node(35, "Stream/Input/Audio/Internal", 0, {{"node.name", "app.quillmere.tap-1"}});
  link(player, 35);
  link(35, recorder);
  EXPECT_FALSE(isRecorded());
}

TEST_F(Microphones, ACircleHasAnEnd) {
  graph.sink(33, "null");
  filterNode(40, "Stream/Input/Audio");
  filterNode(41, "Stream/Output/Audio");
  link(33, 40);
  link(41, 33);
  link(33, recorder);
  link(recorder, 33);
  link(60, 60);
  link(60, 33);
  EXPECT_FALSE(isRecorded());
  link(microphone, 60);
  EXPECT_TRUE(isRecorded());
}

TEST_F(Microphones, ALinkThatIsGoneCountsNoMore) {
  graph.link(1, microphone, recorder);
  EXPECT_TRUE(isRecorded());
  graph.model.remove(1);
  EXPECT_FALSE(isRecorded());
  // An id that is given again.
  graph.link(1, player, recorder);
  EXPECT_FALSE(isRecorded());
}

}  // namespace
}  // namespace quillmere::pipewire::test
