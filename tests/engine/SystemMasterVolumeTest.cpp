// The hardware volume: which elements are read and written, and who is told of a change.
#include "engine/SystemMasterVolume.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <memory>

#include "EngineFixture.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Volumes = std::map<std::uint32_t, MemoryVolumeElement>;

constexpr PropertyAddress volumeAddress(std::uint32_t element) {
  return {audio::volumeScalar, audio::scopeOutput, element};
}

struct SystemMasterVolumeTest : EngineFixture {
  std::unique_ptr<SystemMasterVolume> master;
  std::vector<float> told;

  void useVolumes(Volumes volumes) {
    hardware.updateDevice(speakers, {.uid = "speakers", .name = "Speakers", .volume = std::move(volumes)});
    master = std::make_unique<SystemMasterVolume>(hardware, time.main(), log);
    master->onSystemChange = [this](float value) { told.push_back(value); };
    hardware.clearCalls();
  }
  AudioObjectID addHeadphones(Volumes volumes) {
    return hardware.addDevice({.uid = "headphones", .name = "Headphones", .volume = std::move(volumes)});
  }
};

// Reading.

TEST_F(SystemMasterVolumeTest, ADeviceWithAMainElementIsReadThereAndOnlyThere) {
  useVolumes({{0, {.value = 0.7F}}, {1, {.value = 0.1F}}, {2, {.value = 0.2F}}});
  EXPECT_EQ(master->read(), 0.7F);
  EXPECT_EQ(hardware.callCount(Method::readFloat32), 1);
}

TEST_F(SystemMasterVolumeTest, ADeviceWithTwoChannelsReadsAsTheirMean) {
  useVolumes({{1, {.value = 0.25F}}, {2, {.value = 0.75F}}});
  EXPECT_EQ(master->read(), 0.5F);
}

TEST_F(SystemMasterVolumeTest, ADeviceWithTheFirstChannelAloneReadsAsThatChannel) {
  useVolumes({{1, {.value = 0.25F}}});
  EXPECT_EQ(master->read(), 0.25F);
}

TEST_F(SystemMasterVolumeTest, WithoutAFirstChannelTheSecondAloneIsNoVolume) {
  useVolumes({{2, {.value = 0.75F}}});
  EXPECT_EQ(master->read(), std::nullopt);
}

TEST_F(SystemMasterVolumeTest, TheFirstChannelIsAskedTwiceAndTheSecondAnswerDecides) {
  useVolumes({{1, {.value = 0.25F}}, {2, {.value = 0.75F}}});
  hardware.fail({.method = Method::readFloat32, .element = 1}, unspecifiedError, 1, 1);
  EXPECT_EQ(master->read(), std::nullopt);
  // Failing the first time and answering the second, it counts as 0 in the mean.
  hardware.fail({.method = Method::readFloat32, .element = 1}, unspecifiedError);
  EXPECT_EQ(master->read(), 0.375F);
}

TEST_F(SystemMasterVolumeTest, AMainElementThatCannotBeReadGivesWayToTheChannels) {
  useVolumes({{0, {.value = 0.9F, .readable = false}}, {1, {.value = 0.25F}}, {2, {.value = 0.75F}}});
  EXPECT_EQ(master->read(), 0.5F);
}

TEST_F(SystemMasterVolumeTest, WithoutAnyVolumeControlThereIsNothingToRead) {
  useVolumes({});
  EXPECT_EQ(master->read(), std::nullopt);
  EXPECT_EQ(hardware.callCount(Method::readFloat32), 0);
}

TEST_F(SystemMasterVolumeTest, WithoutADefaultOutputThereIsNothingToReadOrWrite) {
  useVolumes({{0, {}}});
  hardware.setDefaultOutput(0);
  EXPECT_EQ(master->read(), std::nullopt);
  EXPECT_FALSE(master->write(0.5F));
  EXPECT_THAT(log.lines(), IsEmpty());
}

// Writing.

TEST_F(SystemMasterVolumeTest, ADeviceWithAMainElementTakesOneWrite) {
  useVolumes({{0, {}}, {1, {}}, {2, {}}});
  EXPECT_TRUE(master->write(0.5F));
  EXPECT_EQ(hardware.callCount(Method::writeFloat32), 1);
  EXPECT_EQ(hardware.volume(speakers, 0), 0.5F);
  EXPECT_EQ(hardware.volume(speakers, 1), 1.0F);
}

TEST_F(SystemMasterVolumeTest, ADeviceWithTwoChannelsTakesBothAndReadsAsWritten) {
  useVolumes({{1, {}}, {2, {}}});
  EXPECT_TRUE(master->write(0.5F));
  EXPECT_EQ(hardware.volume(speakers, 1), 0.5F);
  EXPECT_EQ(hardware.volume(speakers, 2), 0.5F);
  EXPECT_EQ(master->read(), 0.5F);
}

TEST_F(SystemMasterVolumeTest, AMainElementThatIsNotSettableGivesWayToTheChannels) {
  useVolumes({{0, {.value = 0.9F, .settable = false}}, {1, {}}, {2, {}}});
  EXPECT_TRUE(master->write(0.5F));
  EXPECT_EQ(hardware.volume(speakers, 0), 0.9F);
  EXPECT_EQ(hardware.volume(speakers, 2), 0.5F);
}

TEST_F(SystemMasterVolumeTest, WhereOnlyTheFirstChannelIsThereItAloneIsWrittenAndRead) {
  useVolumes({{1, {}}});
  EXPECT_TRUE(master->write(0.25F));
  EXPECT_EQ(master->read(), 0.25F);
}

TEST_F(SystemMasterVolumeTest, BothChannelsAreTriedEvenIfTheFirstFails) {
  useVolumes({{1, {.settable = false}}, {2, {}}});
  EXPECT_TRUE(master->write(0.25F));
  EXPECT_EQ(hardware.volume(speakers, 2), 0.25F);
}

TEST_F(SystemMasterVolumeTest, WithoutAWritableElementALineSaysSo) {
  useVolumes({{0, {.settable = false}}});
  EXPECT_FALSE(master->write(0.25F));
  EXPECT_THAT(log.lines(),
              ElementsAre(RecordingLogSink::Line{LogLevel::error, "app.quillmere.host", "SystemMasterVolume",
                                                 logText("could not write volume on device %u", speakers)}));
}

TEST_F(SystemMasterVolumeTest, AnElementWhoseSettabilityCannotBeReadIsNotWritten) {
  useVolumes({{0, {}}});
  hardware.fail({.method = Method::isPropertySettable}, unspecifiedError);
  EXPECT_FALSE(master->write(0.25F));
  EXPECT_EQ(hardware.callCount(Method::writeFloat32), 0);
}

TEST_F(SystemMasterVolumeTest, ValuesOutsideTheRangeAreLimited) {
  useVolumes({{0, {}}});
  EXPECT_TRUE(master->write(1.7F));
  EXPECT_EQ(hardware.volume(speakers, 0), 1.0F);
  EXPECT_TRUE(master->write(-1.0F));
  EXPECT_EQ(hardware.volume(speakers, 0), 0.0F);
  EXPECT_TRUE(master->write(std::numeric_limits<float>::quiet_NaN()));
  EXPECT_EQ(hardware.volume(speakers, 0), 1.0F);
}

// Listening.

TEST_F(SystemMasterVolumeTest, ListenersAreAttachedToTheElementsThatAreThere) {
  useVolumes({{0, {}}, {2, {}}});
  EXPECT_EQ(master->listenedDeviceID(), speakers);
  EXPECT_EQ(hardware.listenerCount(speakers, volumeAddress(0)), 1U);
  EXPECT_EQ(hardware.listenerCount(speakers, volumeAddress(1)), 0U);
  EXPECT_EQ(hardware.listenerCount(speakers, volumeAddress(2)), 1U);
}

TEST_F(SystemMasterVolumeTest, WithoutADefaultOutputThereIsNoListener) {
  hardware.setDefaultOutput(0);
  useVolumes({{0, {}}});
  EXPECT_EQ(master->listenedDeviceID(), 0U);
  EXPECT_EQ(hardware.callCount(Method::addPropertyListener), 0);
}

TEST_F(SystemMasterVolumeTest, AChangeByOthersIsToldWithTheVolumeReadFresh) {
  useVolumes({{1, {.value = 0.5F}}, {2, {.value = 0.5F}}});
  hardware.setVolume(speakers, 1, 0.1F);
  hardware.setVolume(speakers, 2, 0.3F);
  EXPECT_THAT(told, IsEmpty());
  time.runUntilIdle();
  EXPECT_THAT(told, ElementsAre((0.1F + 0.3F) * 0.5F, (0.1F + 0.3F) * 0.5F));
}

TEST_F(SystemMasterVolumeTest, OurOwnWritesComeBackAsWell) {
  useVolumes({{0, {}}});
  master->write(0.25F);
  time.runUntilIdle();
  EXPECT_THAT(told, ElementsAre(0.25F));
}

TEST_F(SystemMasterVolumeTest, AVolumeThatCannotBeReadIsNotTold) {
  useVolumes({{0, {}}});
  hardware.fail({.method = Method::readFloat32}, unspecifiedError, MemoryAudioHardware::always);
  hardware.setVolume(speakers, 0, 0.1F);
  time.runUntilIdle();
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(SystemMasterVolumeTest, WithoutSomeoneToTellAChangeIsHarmless) {
  useVolumes({{0, {}}});
  master->onSystemChange = nullptr;
  hardware.setVolume(speakers, 0, 0.1F);
  time.runUntilIdle();
}

TEST_F(SystemMasterVolumeTest, FollowingTheDefaultMovesTheListeners) {
  useVolumes({{0, {}}});
  const auto headphones = addHeadphones({{1, {.value = 0.3F}}, {2, {.value = 0.3F}}});
  hardware.setDefaultOutput(headphones);
  master->followDefaultOutput();
  EXPECT_EQ(master->listenedDeviceID(), headphones);
  EXPECT_EQ(hardware.listenerCount(headphones, volumeAddress(1)), 1U);
  EXPECT_EQ(hardware.listenerCount(headphones, volumeAddress(2)), 1U);
  hardware.setVolume(headphones, 1, 0.5F);
  time.runUntilIdle();
  EXPECT_THAT(told, ElementsAre((0.5F + 0.3F) * 0.5F));
}

TEST_F(SystemMasterVolumeTest, TheOldDevicesListenersStayAndTellTheNewDevicesVolume) {
  useVolumes({{0, {.value = 0.5F}}});
  const auto headphones = addHeadphones({{0, {.value = 0.3F}}});
  hardware.setDefaultOutput(headphones);
  master->followDefaultOutput();
  // A removal was asked for, of a block that was never added.
  EXPECT_EQ(hardware.callCount(Method::removePropertyListener), 1);
  EXPECT_EQ(hardware.listenerCount(speakers, volumeAddress(0)), 1U);
  hardware.setVolume(speakers, 0, 0.9F);
  time.runUntilIdle();
  EXPECT_THAT(told, ElementsAre(0.3F));
}

TEST_F(SystemMasterVolumeTest, ADefaultThatGoesToAndFroForEverNeedsNoMoreListeners) {
  useVolumes({{0, {}}, {1, {}}, {2, {}}});
  const auto headphones = addHeadphones({{0, {.value = 0.3F}}});
  for (int change = 0; change < 1000; ++change) {
    hardware.setDefaultOutput(change % 2 == 0 ? headphones : speakers);
    master->followDefaultOutput();
    hardware.clearCalls();
  }
  EXPECT_EQ(hardware.differentListenerCount(), 3U + 1U);
}

TEST_F(SystemMasterVolumeTest, FollowingToNoDefaultLeavesNothingListenedTo) {
  useVolumes({{0, {}}});
  hardware.setDefaultOutput(0);
  master->followDefaultOutput();
  EXPECT_EQ(master->listenedDeviceID(), 0U);
  hardware.clearCalls();
  master->followDefaultOutput();
  EXPECT_EQ(hardware.callCount(Method::removePropertyListener), 0);
}

TEST_F(SystemMasterVolumeTest, AListenerThatFiresAfterTheEndDoesNothing) {
  useVolumes({{0, {}}});
  hardware.setVolume(speakers, 0, 0.1F);
  master.reset();
  time.runUntilIdle();
  EXPECT_THAT(told, IsEmpty());
}

using SystemMasterVolumeDeathTest = SystemMasterVolumeTest;

TEST_F(SystemMasterVolumeDeathTest, EveryCallOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  useVolumes({{0, {.value = 0.7F}}});
  const auto elsewhere = [this](const std::function<void()>& call) {
    time.background().post(call);
    time.runUntilIdle();
  };
  EXPECT_DEATH(elsewhere([this] { static_cast<void>(master->read()); }), "off the main thread");
  EXPECT_DEATH(elsewhere([this] { master->write(0.5F); }), "off the main thread");
  EXPECT_DEATH(elsewhere([this] { master->followDefaultOutput(); }), "off the main thread");
}

}  // namespace
}  // namespace quillmere
