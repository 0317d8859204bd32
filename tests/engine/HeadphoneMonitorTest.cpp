// Losing a personal device, and devices that come and go.
#include "engine/HeadphoneMonitor.h"

#include <gmock/gmock.h>

#include <memory>

#include "EngineFixture.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct HeadphoneMonitorTest : EngineFixture {
  std::unique_ptr<HeadphoneMonitor> monitor = std::make_unique<HeadphoneMonitor>(hardware, time.main());
  std::vector<std::string> disconnected;
  std::vector<std::string> removed;
  std::vector<std::string> added;

  HeadphoneMonitorTest() {
    monitor->onDisconnect = [this](const std::optional<std::string>& uid) {
      disconnected.push_back(uid.value_or("none"));
    };
    monitor->onDeviceRemoved = [this](const std::string& uid) { removed.push_back(uid); };
    monitor->onDeviceAdded = [this](const std::string& uid) { added.push_back(uid); };
  }

  AudioObjectID device(const std::string& uid, std::uint32_t transport, std::uint32_t outputs = 1) {
    const auto id = hardware.addDevice({.uid = uid, .name = uid, .outputStreamCount = outputs, .transport = transport});
    time.runUntilIdle();
    return id;
  }
  void makeDefault(AudioObjectID id) {
    hardware.setDefaultOutput(id);
    time.runUntilIdle();
  }
};

TEST_F(HeadphoneMonitorTest, TheDefaultLeavingAPersonalDeviceIsALoss) {
  for (const auto transport : {audio::transportBluetooth, audio::transportBluetoothLE, audio::transportUSB,
                               audio::transportFireWire, audio::transportAirPlay}) {
    EXPECT_TRUE(HeadphoneMonitor::isPersonal(transport));
    const auto headset = device("headset", transport);
    makeDefault(headset);
    monitor->start();
    disconnected.clear();
    makeDefault(speakers);
    EXPECT_THAT(disconnected, ElementsAre("headset"));
  }
}

TEST_F(HeadphoneMonitorTest, EverythingElseIsNotPersonal) {
  for (const auto transport : {0U, audio::transportBuiltIn, audio::transportPCI, audio::transportHDMI,
                               audio::transportVirtual, fourCC("grup"), 0xFFFFFFFFU}) {
    EXPECT_FALSE(HeadphoneMonitor::isPersonal(transport));
  }
}

TEST_F(HeadphoneMonitorTest, FromOnePersonalDeviceToAnotherIsNoLoss) {
  makeDefault(device("buds", audio::transportBluetooth));
  const auto headset = device("headset", audio::transportUSB);
  monitor->start();
  makeDefault(headset);
  EXPECT_THAT(disconnected, IsEmpty());
  // The second of the two is what is compared with next.
  makeDefault(speakers);
  EXPECT_THAT(disconnected, ElementsAre("headset"));
}

TEST_F(HeadphoneMonitorTest, FromABuiltInDeviceToAnythingIsNoLoss) {
  monitor->start();
  const auto screen = device("screen", audio::transportHDMI);
  makeDefault(screen);
  makeDefault(speakers);
  makeDefault(device("headset", audio::transportUSB));
  EXPECT_THAT(disconnected, IsEmpty());
}

TEST_F(HeadphoneMonitorTest, AHeadsetThatIsPulledOutIsLostAndRemoved) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  monitor->start();
  hardware.removeDevice(headset);
  time.runUntilIdle();
  EXPECT_THAT(disconnected, ElementsAre("headset"));
  EXPECT_THAT(removed, ElementsAre("headset"));
}

TEST_F(HeadphoneMonitorTest, ASuppressedChangeIsNotToldAndStillRemembered) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  monitor->start();
  monitor->suppressNext = true;
  makeDefault(speakers);
  EXPECT_THAT(disconnected, IsEmpty());
  EXPECT_FALSE(monitor->suppressNext);
  makeDefault(headset);
  makeDefault(speakers);
  EXPECT_THAT(disconnected, ElementsAre("headset"));
}

TEST_F(HeadphoneMonitorTest, ASuppressionWithoutAChangeSwallowsTheNextRealOne) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  monitor->start();
  monitor->suppressNext = true;
  makeDefault(headset);
  EXPECT_TRUE(monitor->suppressNext);
  makeDefault(speakers);
  EXPECT_THAT(disconnected, IsEmpty());
  EXPECT_FALSE(monitor->suppressNext);
}

TEST_F(HeadphoneMonitorTest, AnUnreadableNewDeviceCountsAsALoss) {
  makeDefault(device("headset", audio::transportUSB));
  monitor->start();
  const auto buds = device("buds", audio::transportBluetooth);
  hardware.fail({.method = Method::readUInt32, .object = buds, .selector = audio::transportType}, unspecifiedError);
  makeDefault(buds);
  EXPECT_THAT(disconnected, ElementsAre("headset"));
}

TEST_F(HeadphoneMonitorTest, AnUnreadableOldDeviceIsNoLoss) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  hardware.fail({.method = Method::readUInt32, .object = headset, .selector = audio::transportType}, unspecifiedError);
  monitor->start();
  makeDefault(speakers);
  EXPECT_THAT(disconnected, IsEmpty());
}

TEST_F(HeadphoneMonitorTest, ALossWithoutAKnownUIDIsToldWithNone) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  hardware.fail({.method = Method::readString, .object = headset}, unspecifiedError);
  monitor->start();
  makeDefault(speakers);
  EXPECT_THAT(disconnected, ElementsAre("none"));
}

TEST_F(HeadphoneMonitorTest, NoDefaultAtAllIsALossToo) {
  makeDefault(device("headset", audio::transportUSB));
  monitor->start();
  makeDefault(0);
  EXPECT_THAT(disconnected, ElementsAre("headset"));
}

TEST_F(HeadphoneMonitorTest, DevicesThatComeAndGoAreToldRemovalsFirst) {
  const auto old = device("old", audio::transportUSB);
  monitor->start();
  std::vector<std::string> order;
  monitor->onDeviceRemoved = [&](const std::string& uid) { order.push_back("-" + uid); };
  monitor->onDeviceAdded = [&](const std::string& uid) { order.push_back("+" + uid); };
  hardware.removeDevice(old);
  hardware.addDevice({.uid = "new", .name = "New"});
  time.runUntilIdle();
  EXPECT_THAT(order, ElementsAre("-old", "+new"));
}

TEST_F(HeadphoneMonitorTest, InputOnlyDevicesAreToldToo) {
  monitor->start();
  const auto microphone = device("mic", audio::transportUSB, 0);
  hardware.removeDevice(microphone);
  time.runUntilIdle();
  EXPECT_THAT(added, ElementsAre("mic"));
  EXPECT_THAT(removed, ElementsAre("mic"));
}

TEST_F(HeadphoneMonitorTest, ADeviceThatAppearsAndVanishesBetweenTwoLooksIsNotTold) {
  monitor->start();
  const auto brief = hardware.addDevice({.uid = "brief", .name = "Brief"});
  hardware.removeDevice(brief);
  time.runUntilIdle();
  EXPECT_THAT(added, IsEmpty());
  EXPECT_THAT(removed, IsEmpty());
}

TEST_F(HeadphoneMonitorTest, AnUnreadableListLooksLikeAllGone) {
  const auto headset = device("headset", audio::transportUSB);
  monitor->start();
  hardware.fail({.method = Method::readObjectIDs}, unspecifiedError);
  hardware.addDevice({.uid = "new", .name = "New"});
  time.runUntilIdle();
  EXPECT_THAT(removed, UnorderedElementsAre("headset", "speakers"));
  EXPECT_THAT(added, IsEmpty());
  EXPECT_TRUE(hardware.device(headset));
}

TEST_F(HeadphoneMonitorTest, ASecondStartAddsNoListeners) {
  monitor->start();
  monitor->start();
  EXPECT_EQ(hardware.listenerCount(systemObjectID, defaultOutputAddress), 1U);
  EXPECT_EQ(hardware.listenerCount(systemObjectID, deviceListAddress), 1U);
}

TEST_F(HeadphoneMonitorTest, WithoutCallbacksChangesAreHarmless) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  monitor->start();
  monitor->onDisconnect = nullptr;
  monitor->onDeviceRemoved = nullptr;
  monitor->onDeviceAdded = nullptr;
  hardware.removeDevice(headset);
  device("new", audio::transportUSB);
}

TEST_F(HeadphoneMonitorTest, AMonitorThatIsGoneHearsNothing) {
  const auto headset = device("headset", audio::transportUSB);
  makeDefault(headset);
  monitor->start();
  hardware.removeDevice(headset);
  monitor.reset();
  time.runUntilIdle();
  EXPECT_THAT(disconnected, IsEmpty());
  EXPECT_THAT(removed, IsEmpty());
}

using HeadphoneMonitorDeathTest = HeadphoneMonitorTest;

TEST_F(HeadphoneMonitorDeathTest, StartingOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  const auto elsewhere = [this] {
    time.background().post([this] { monitor->start(); });
    time.runUntilIdle();
  };
  EXPECT_DEATH(elsewhere(), "off the main thread");
}

TEST_F(HeadphoneMonitorDeathTest, AHostThatTellsOffTheMainThreadStopsTheProcess) {
#ifndef QUILLMERE_THREAD_CHECKS
  GTEST_SKIP() << "built without QUILLMERE_THREAD_CHECKS";
#endif
  MemoryAudioHardware careless(time.background(), time);
  HeadphoneMonitor listening(careless, time.main());
  listening.start();
  careless.addDevice({.uid = "headset", .name = "Headset"});
  EXPECT_DEATH(time.runUntilIdle(), "off the main thread");
}

}  // namespace
}  // namespace quillmere
