// From the daemon's events to devices, processes and what has changed.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <utility>

#include "Graph.h"
#include "platform/linux/pipewire/AudioSnapshot.h"
#include "platform/linux/pipewire/PropertyValue.h"

namespace quillmere::pipewire::test {
namespace {

template <typename Share>
constexpr bool isReadWithoutAName =
    requires(Share share) { std::move(share)->processes; } || requires(Share share) { (*std::move(share)).processes; };

struct AudioSnapshotTest : ::testing::Test {
  Graph graph;
  ObjectIDs ids;
  Volumes pending;
  [[nodiscard]] AudioSnapshot take() { return takeSnapshot(graph.model, pending, ids); }
};

TEST_F(AudioSnapshotTest, AShareThatNobodyHoldsCannotBeRead) {
  // A loop over a part of it reads what another thread may free meanwhile.
  static_assert(!isReadWithoutAName<SharedSnapshot>);
  static_assert(isReadWithoutAName<std::shared_ptr<const AudioSnapshot>>);
  graph.sink(1, "one");
  const SharedSnapshot share(std::make_shared<const AudioSnapshot>(take()));
  EXPECT_EQ(share->devices.size(), 1U);
  EXPECT_EQ((*share).devices.size(), 1U);
}

TEST_F(AudioSnapshotTest, ADeviceWithoutADescriptionGoesByItsNickOrName) {
  graph.sink(1, "one", {{"node.nick", "One"}});
  graph.sink(2, "two");
  const auto snapshot = take();
  EXPECT_EQ(snapshot.devices[0].name, "One");
  EXPECT_EQ(snapshot.devices[1].name, "two");
}

TEST_F(AudioSnapshotTest, ADevicesNameIsCutAndCleanedAndItsUIDIsNot) {
  graph.sink(1, "one", {{"node.description", "Ann's\n\"Pods\"\x1b" + std::string(5000, 'x')}});
  graph.sink(2, "two", {{"node.description", " \t "}, {"node.nick", "Two\xff"}});
  graph.sink(3, std::string(5000, 'y'));
  const auto snapshot = take();
  EXPECT_EQ(snapshot.devices[0].name, "Ann's \"Pods\" " + std::string(256 - 13, 'x'));
  EXPECT_EQ(snapshot.devices[1].name, "Two\xEF\xBF\xBD");
  EXPECT_EQ(snapshot.devices[2].name, std::string(256, 'y'));
  EXPECT_EQ(snapshot.devices[2].uid, std::string(5000, 'y'));
}

TEST_F(AudioSnapshotTest, OutputsOfOneNameAreAsManyDevicesWhateverTheirSerials) {
  graph.sink(1, "one", {{"object.serial", ""}});
  graph.sink(2, "one", {{"object.serial", ""}});
  graph.sink(3, "one", {{"object.serial", ""}});
  graph.sink(4, "one", {{"object.serial", "7"}});
  graph.sink(5, "one", {{"object.serial", "7"}});
  graph.sink(6, "one\n7");
  const auto snapshot = take();
  std::set<AudioObjectID> numbers;
  for (const auto& device : snapshot.devices) numbers.insert({device.id, device.outputStream});
  EXPECT_EQ(numbers.size(), 12U);
  EXPECT_EQ(take().devices, snapshot.devices);
}

TEST_F(AudioSnapshotTest, ADeviceThatReturnsHasItsOldIDUnderAnotherGlobal) {
  graph.sink(1, "one");
  const auto id = take().devices[0].id;
  graph.model.remove(1);
  graph.sink(9, "two");
  graph.sink(1, "other");
  graph.sink(7, "one");
  EXPECT_EQ(take().devices[2].id, id);
}

TEST_F(AudioSnapshotTest, ARoutesVolumeGoesBeforeTheNodes) {
  graph.model.updateDevice(50, {{"device.api", "alsa"}});
  graph.sink(1, "card", {{"device.id", "50"}, {"card.profile.device", "3"}});
  graph.model.setNodeVolumes(1, {1.0F, 1.0F});
  EXPECT_EQ(take().devices[0].volumes, (std::vector<float>{1.0F, 1.0F}));
  graph.model.setRoutes(50, {{0, 2, true, {0.001F}}, {1, 3, true, {0.125F, 0.125F}}});
  EXPECT_EQ(take().devices[0].volumes, (std::vector<float>{0.5F, 0.5F}));
}

TEST_F(AudioSnapshotTest, AVolumeThatWasWrittenCountsUntilItIsConfirmed) {
  graph.sink(1, "one");
  graph.model.setNodeVolumes(1, {1.0F});
  pending[1] = {0.125F};
  EXPECT_EQ(take().devices[0].volumes, std::vector<float>{0.5F});
}

TEST_F(AudioSnapshotTest, TheDefaultIsTheOutputOfItsName) {
  graph.node(1, "Audio/Source", 0, {{"node.name", "two"}});
  graph.sink(2, "one");
  graph.sink(3, "two");
  auto snapshot = take();
  setDefaultOutput(snapshot, {}, "two");
  EXPECT_EQ(snapshot.defaultOutput, snapshot.devices[2].id);
}

TEST_F(AudioSnapshotTest, ADefaultThatNobodyKnowsIsNone) {
  graph.sink(1, "one");
  auto snapshot = take();
  setDefaultOutput(snapshot, {}, "gone");
  EXPECT_EQ(snapshot.defaultOutput, 0U);
  setDefaultOutput(snapshot, {}, std::nullopt);
  EXPECT_EQ(snapshot.defaultOutput, 0U);
}

TEST_F(AudioSnapshotTest, ADefaultThatHasGoneIsNotListedButStillTellsWhatItWas) {
  graph.sink(1, "one", {{"device.bus", "usb"}});
  graph.model.setNodeVolumes(1, {0.125F});
  const auto before = take();
  graph.model.remove(1);
  auto after = take();
  setDefaultOutput(after, before, "one");
  EXPECT_TRUE(after.devices.empty());
  EXPECT_EQ(after.defaultOutput, before.devices[0].id);
  const auto* gone = after.device(after.defaultOutput);
  ASSERT_NE(gone, nullptr);
  EXPECT_EQ(deviceProperty(*gone, {audio::deviceUID}).text, "one");
  EXPECT_EQ(deviceProperty(*gone, {audio::transportType}).number, audio::transportUSB);
  EXPECT_EQ(deviceProperty(*gone, {audio::deviceIsAlive}).number, 0U);
  const auto volume = deviceProperty(*gone, {audio::volumeScalar, audio::scopeOutput, 0});
  EXPECT_EQ(volume.real, 0.5F);
  EXPECT_FALSE(volume.isSettable);
  // And in the picture after that one too.
  auto later = take();
  setDefaultOutput(later, after, "one");
  EXPECT_EQ(later.defaultOutput, after.defaultOutput);
}

TEST_F(AudioSnapshotTest, ADeviceThatIsHeldIsListedUntilItIsLetGoOrReturns) {
  graph.sink(1, "one");
  graph.sink(2, "two");
  const auto before = take();
  graph.model.remove(1);
  auto held = take();
  keepDevices(held, before, [](const auto&) { return true; });
  ASSERT_EQ(held.devices.size(), 2U);
  EXPECT_EQ(held.devices[1].id, before.devices[0].id);
  EXPECT_FALSE(held.devices[1].isThere);
  auto letGo = take();
  keepDevices(letGo, held, [](const auto&) { return false; });
  EXPECT_EQ(letGo.devices.size(), 1U);
  graph.sink(7, "one");
  auto returned = take();
  keepDevices(returned, held, [](const auto&) { return true; });
  ASSERT_EQ(returned.devices.size(), 2U);
  EXPECT_TRUE(returned.device(before.devices[0].id)->isThere);
}

TEST_F(AudioSnapshotTest, AChoiceIsToldOnceAnsweredEvenWhereItHasChangedNothing) {
  graph.sink(1, "one");
  const auto before = take();
  auto awaited = take();
  awaited.defaultOutput = awaited.devices[0].id;
  EXPECT_TRUE(differences(before, awaited).empty());
  auto refused = awaited;
  refused.defaultOutput = 0;
  refused.choicesAnswered = 1;
  refused.refusedOutput = awaited.defaultOutput;
  EXPECT_EQ(differences(awaited, refused),
            (std::vector<PropertyChange>{{systemObjectID, audio::defaultOutputDevice},
                                         {systemObjectID, audio::refusedDefaultOutput}}));
}

TEST_F(AudioSnapshotTest, AClientWithoutAStreamIsNoProcess) {
  graph.client(10, "test.mixer");
  EXPECT_TRUE(take().processes.empty());
}

TEST_F(AudioSnapshotTest, ClientsOfOneApplicationAreOneProcessWithThePidOfTheFirst) {
  graph.client(10, "test.player", {{"pipewire.sec.pid", "100"}});
  graph.client(11, "test.player", {{"pipewire.sec.pid", "101"}});
  graph.playback(20, 10);
  graph.playback(21, 11);
  const auto snapshot = take();
  ASSERT_EQ(snapshot.processes.size(), 1U);
  EXPECT_EQ(snapshot.processes[0].pid, 100);
  EXPECT_TRUE(snapshot.processes[0].isRunningOutput);
}

TEST_F(AudioSnapshotTest, AClientThatSaysNothingHasANameOfLastResortAndALogLine) {
  graph.client(10, "");
  graph.node(20, "Stream/Output/Audio", 10, {{"node.name", ""}});
  ASSERT_EQ(take().processes.size(), 1U);
  EXPECT_EQ(take().processes[0].identifier, "unnamed-audio-client");
  EXPECT_EQ(graph.log.lines.size(), 1U);
}

TEST_F(AudioSnapshotTest, ANameThatComesLateIsTaken) {
  graph.client(10, "", {{"application.process.binary", "player"}});
  graph.playback(20, 10);
  EXPECT_EQ(take().processes[0].identifier, "player");
  graph.client(10, "test.player");
  EXPECT_EQ(take().processes[0].identifier, "test.player");
}

TEST_F(AudioSnapshotTest, OurOwnProcessAndOurOwnNodesDoNotCount) {
  graph.client(10, "ours", {{"pipewire.sec.pid", "4711"}});
  graph.playback(20, 10);
  graph.client(11, "test.player");
  graph.playback(21, 11, {{"node.name", "app.quillmere.tone"}});
  EXPECT_TRUE(take().processes.empty());
}

TEST_F(AudioSnapshotTest, InputRunsOnlyOnceLinkedToSomethingThatIsNoMonitor) {
  graph.client(10, "test.recorder");
  graph.recording(20, 10);
  graph.sink(1, "one");
  graph.node(2, "Audio/Source", 0, {{"node.name", "mic"}});
  EXPECT_FALSE(take().processes[0].isRunningInput);
  graph.link(30, 1, 20);
  EXPECT_FALSE(take().processes[0].isRunningInput);
  graph.link(31, 2, 20);
  EXPECT_TRUE(take().processes[0].isRunningInput);
}

TEST_F(AudioSnapshotTest, AMonitorPortOfADuplexDeviceIsNoMicrophoneButItsOtherPortsAre) {
  graph.client(10, "test.recorder");
  graph.recording(20, 10);
  graph.node(2, "Audio/Duplex", 0);
  graph.model.updatePort(40, {{"port.monitor", "true"}});
  graph.link(30, 2, 20, 40);
  EXPECT_FALSE(take().processes[0].isRunningInput);
  graph.link(31, 2, 20, 41);
  EXPECT_TRUE(take().processes[0].isRunningInput);
}

TEST_F(AudioSnapshotTest, OnlyWhatHasChangedIsTold) {
  graph.sink(1, "one");
  graph.model.setNodeVolumes(1, {1.0F});
  const auto before = take();
  EXPECT_TRUE(differences(before, before).empty());
  graph.model.setNodeVolumes(1, {0.5F});
  const auto louder = take();
  EXPECT_EQ(differences(before, louder), (std::vector<PropertyChange>{{louder.devices[0].id, audio::volumeScalar}}));
  graph.sink(2, "two");
  const auto more = take();
  const auto changes = differences(louder, more);
  EXPECT_EQ(changes, (std::vector<PropertyChange>{{systemObjectID, audio::devices},
                                                  {more.devices[1].id, audio::deviceIsAlive}}));
}

TEST_F(AudioSnapshotTest, ElementZeroIsTheLoudestChannelAndChannelsFollow) {
  DeviceSnapshot device;
  device.volumes = {0.25F, 0.5F};
  EXPECT_EQ(deviceProperty(device, {audio::volumeScalar, audio::scopeOutput, 0}).real, 0.5F);
  EXPECT_EQ(deviceProperty(device, {audio::volumeScalar, audio::scopeOutput, 1}).real, 0.25F);
  EXPECT_EQ(deviceProperty(device, {audio::volumeScalar, audio::scopeOutput, 3}).status, unknownPropertyError);
  EXPECT_EQ(deviceProperty(device, {audio::volumeScalar, audio::scopeGlobal, 0}).status, unknownPropertyError);
  device.volumes.clear();
  EXPECT_EQ(deviceProperty(device, {audio::volumeScalar, audio::scopeOutput, 0}).status, unknownPropertyError);
}

}  // namespace
}  // namespace quillmere::pipewire::test
