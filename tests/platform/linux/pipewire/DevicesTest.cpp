// Devices, default output and volumes as the daemon and the session manager have them.
#include <gtest/gtest.h>

#include <cmath>

#include "support/ChildProcess.h"
#include "support/Machine.h"
#include "support/MonitorRecorder.h"
#include "support/Session.h"
#include "support/SessionTest.h"

namespace quillmere::test {
namespace {

class Devices : public SessionTest {};

constexpr PropertyAddress volume{audio::volumeScalar, audio::scopeOutput, 0};

/// A virtual device of 1.4 keeps a new volume to itself until it has sounded once; a card never does.
void letSound(const std::string& device) { static_cast<void>(MonitorRecorder(device).nextPeak()); }

TEST_F(Devices, SinksAndSourcesAreListedAndMonitorsAreNot) {
  const Machine machine;
  EXPECT_NE(machine.device(session::sinkA), 0U);
  EXPECT_NE(machine.device(session::sinkB), 0U);
  EXPECT_NE(machine.device("quillmere_test_microphone"), 0U);
  for (const auto id : machine.list(audio::devices)) {
    EXPECT_EQ(machine.text(id, audio::deviceUID).find(".monitor"), std::string::npos);
  }
}

TEST_F(Devices, ASinkHasOutputStreamsAndAMicrophoneHasNone) {
  const Machine machine;
  std::uint32_t bytes = 0;
  ASSERT_EQ(machine.audio.propertyDataSize(machine.device(session::sinkA), {audio::streams, audio::scopeOutput}, bytes),
            noErr);
  EXPECT_GT(bytes, 0U);
  ASSERT_EQ(machine.audio.propertyDataSize(machine.device("quillmere_test_microphone"),
                                           {audio::streams, audio::scopeOutput}, bytes),
            noErr);
  EXPECT_EQ(bytes, 0U);
}

TEST_F(Devices, NameIsTheDescription) {
  const Machine machine;
  EXPECT_EQ(machine.text(machine.device(session::sinkA), audio::objectName), "Desk Speakers");
}

TEST_F(Devices, AVirtualSinkIsNotPersonal) {
  const Machine machine;
  EXPECT_EQ(machine.number(machine.device(session::sinkA), audio::transportType), audio::transportVirtual);
}

TEST_F(Devices, AUSBSinkSaysSo) {
  Machine machine;
  session::addSink("test_usb", "device.bus=usb");
  ASSERT_TRUE(eventually([&] { return machine.device("test_usb") != 0; }));
  EXPECT_EQ(machine.number(machine.device("test_usb"), audio::transportType), audio::transportUSB);
}

TEST_F(Devices, ADefaultOutputThatWasSetIsReadBackAtOnceAndTakenByTheSessionManager) {
  Machine machine;
  const auto target = machine.device(session::sinkB);
  ASSERT_EQ(machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, target), noErr);
  EXPECT_EQ(machine.defaultOutput(), session::sinkB);
  EXPECT_TRUE(eventually(
      [] { return run({"pw-metadata", "0", "default.audio.sink"}).find(session::sinkB) != std::string::npos; }));
  EXPECT_EQ(machine.defaultOutput(), session::sinkB);
}

TEST_F(Devices, ADefaultOutputThatIsNoOutputIsRefused) {
  Machine machine;
  EXPECT_NE(machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, 4711), noErr);
  EXPECT_NE(machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice},
                                      machine.device("quillmere_test_microphone")),
            noErr);
  EXPECT_EQ(machine.defaultOutput(), session::sinkA);
}

TEST_F(Devices, ADefaultChangedByAnotherProgramIsToldOnceOnTheMainExecutor) {
  Machine machine;
  int told = 0;
  machine.audio.addPropertyListener(systemObjectID, {audio::defaultOutputDevice},
                                    std::make_shared<const std::function<void()>>([&] { ++told; }));
  // A session manager that has only just started may miss the first word.
  ASSERT_TRUE(eventually([&] {
    run({"pw-metadata", "0", "default.configured.audio.sink", "{\"name\":\"" + session::sinkB + "\"}",
         "Spa:String:JSON"});
    return machine.defaultOutput() == session::sinkB;
  }));
  EXPECT_EQ(told, 0);
  machine.main.runAll();
  EXPECT_EQ(told, 1);
}

TEST_F(Devices, VolumeIsTheSlidersCubicPosition) {
  letSound(session::sinkA);
  Machine machine;
  const auto device = machine.device(session::sinkA);
  run({"wpctl", "set-volume", "@DEFAULT_AUDIO_SINK@", "0.4"});
  EXPECT_TRUE(eventually([&] {
    float value = 0.0F;
    return machine.audio.readFloat32(device, volume, value) == noErr && std::fabs(value - 0.4F) < 0.001F;
  }));
}

TEST_F(Devices, AVolumeThatWasSetIsReadBackAtOnceAndSeenByOthers) {
  letSound(session::sinkA);
  Machine machine;
  ASSERT_EQ(machine.audio.writeFloat32(machine.device(session::sinkA), volume, 0.5F), noErr);
  float value = 0.0F;
  ASSERT_EQ(machine.audio.readFloat32(machine.device(session::sinkA), volume, value), noErr);
  EXPECT_NEAR(value, 0.5F, 1e-5F);
  EXPECT_TRUE(eventually(
      [] { return run({"wpctl", "get-volume", "@DEFAULT_AUDIO_SINK@"}).find("0.50") != std::string::npos; }));
}

TEST_F(Devices, AVolumeSetBeforeTheFirstSoundStaysAndIsHeardWithIt) {
  Machine machine;
  const auto device = machine.device(session::sinkA);
  const auto reads = [&](float wanted) {
    float value = -1.0F;
    return machine.audio.readFloat32(device, volume, value) == noErr && std::fabs(value - wanted) < 1e-4F;
  };
  ASSERT_EQ(machine.audio.writeFloat32(device, volume, 0.5F), noErr);
  // Longer than an answer is waited for.
  EXPECT_FALSE(eventually([&] { return !reads(0.5F); }, std::chrono::milliseconds(700)));
  const auto player = playSignal({"--app-id", "test.player"});
  const MonitorRecorder monitor(session::sinkA);
  float peak = 0.0F;
  EXPECT_TRUE(eventually([&] {
    EXPECT_TRUE(reads(0.5F));
    peak = monitor.nextPeak();
    return std::fabs(peak - 0.5F * 0.125F) < 0.0005F;
  })) << peak;
  EXPECT_TRUE(eventually(
      [] { return run({"wpctl", "get-volume", "@DEFAULT_AUDIO_SINK@"}).find("0.50") != std::string::npos; }));
}

TEST_F(Devices, WhatAnotherProgramSetsWithTheFirstSoundReplacesWhatWeSetBefore) {
  Machine machine;
  const auto device = machine.device(session::sinkA);
  ASSERT_EQ(machine.audio.writeFloat32(device, volume, 0.5F), noErr);
  run({"wpctl", "set-volume", "@DEFAULT_AUDIO_SINK@", "0.8"});
  letSound(session::sinkA);
  EXPECT_TRUE(eventually([&] {
    float value = -1.0F;
    return machine.audio.readFloat32(device, volume, value) == noErr && std::fabs(value - 0.8F) < 0.001F;
  }));
}

TEST_F(Devices, AChangeOfVolumeByAnotherProgramIsTold) {
  letSound(session::sinkA);
  Machine machine;
  bool isTold = false;
  machine.audio.addPropertyListener(machine.device(session::sinkA), volume,
                                    std::make_shared<const std::function<void()>>([&] { isTold = true; }));
  run({"wpctl", "set-volume", "@DEFAULT_AUDIO_SINK@", "0.3"});
  EXPECT_TRUE(eventually([&] {
    machine.main.runAll();
    return isTold;
  }));
}

TEST_F(Devices, ADragOfTheSliderNeverReadsBackAnOlderPosition) {
  Machine machine;
  const auto device = machine.device(session::sinkA);
  for (int i = 0; i <= 100; ++i) {
    const float wanted = static_cast<float>(i) / 100.0F;
    ASSERT_EQ(machine.audio.writeFloat32(device, volume, wanted), noErr);
    float value = -1.0F;
    ASSERT_EQ(machine.audio.readFloat32(device, volume, value), noErr);
    ASSERT_NEAR(value, wanted, 1e-4F);
  }
}

TEST_F(Devices, AListenerThatWasRemovedIsNotCalled) {
  Machine machine;
  bool isTold = false;
  const auto listener = std::make_shared<const std::function<void()>>([&] { isTold = true; });
  machine.audio.addPropertyListener(systemObjectID, {audio::devices}, listener);
  session::addSink("test_extra");
  ASSERT_TRUE(eventually([&] { return machine.device("test_extra") != 0; }));
  machine.audio.removePropertyListener(systemObjectID, {audio::devices}, listener);
  machine.main.runAll();
  EXPECT_FALSE(isTold);
}

TEST_F(Devices, ADeviceThatComesBackHasItsOldID) {
  Machine machine;
  session::addSink("test_extra");
  ASSERT_TRUE(eventually([&] { return machine.device("test_extra") != 0; }));
  const auto id = machine.device("test_extra");
  session::removeSink("test_extra");
  ASSERT_TRUE(eventually([&] { return machine.device("test_extra") == 0; }));
  std::uint32_t value = 1;
  EXPECT_EQ(machine.audio.readUInt32(id, {audio::deviceIsAlive}, value), badObjectError);
  session::addSink("test_extra");
  ASSERT_TRUE(eventually([&] { return machine.device("test_extra") != 0; }));
  EXPECT_EQ(machine.device("test_extra"), id);
}

TEST_F(Devices, ADeviceWithQuotesInItsNameCanBeTheDefault) {
  Machine machine;
  const std::string name = R"(test "quoted" \ sink)";
  session::addSink(name, R"(node.description="The \"Good\" One")");
  ASSERT_TRUE(eventually([&] { return machine.device(name) != 0; }));
  EXPECT_EQ(machine.text(machine.device(name), audio::objectName), "The \"Good\" One");
  ASSERT_EQ(machine.audio.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, machine.device(name)), noErr);
  EXPECT_EQ(machine.defaultOutput(), name);
}

TEST_F(Devices, ADescriptionOf4096CharactersIsCut) {
  Machine machine;
  const std::string description(4096, 'x');
  session::addSink("test_long", "node.description=\"" + description + "\"");
  ASSERT_TRUE(eventually([&] { return machine.device("test_long") != 0; }));
  EXPECT_EQ(machine.text(machine.device("test_long"), audio::objectName), description.substr(0, 256));
}

TEST_F(Devices, TwoDevicesOfOneNameAreTwoObjects) {
  Machine machine;
  session::addSink("test_twin");
  session::addSink("test_twin");
  const auto twins = [&] {
    std::vector<AudioObjectID> found;
    for (const auto id : machine.list(audio::devices)) {
      if (machine.text(id, audio::deviceUID) == "test_twin") found.push_back(id);
    }
    return found;
  };
  ASSERT_TRUE(eventually([&] { return twins().size() == 2; }));
  EXPECT_NE(twins()[0], twins()[1]);
}

TEST_F(Devices, BrokenMetadataIsLoggedAndTheSessionManagersWordStaysInForce) {
  Machine machine;
  ASSERT_EQ(machine.defaultOutput(), session::sinkA);
  run({"pw-metadata", "0", "default.audio.sink", "{\"name\":", "Spa:String:JSON"});
  EXPECT_TRUE(eventually([&] { return machine.log.contains("can't be read"); })) << machine.log.all();
  // A picture that is surely taken after that.
  session::addSink("test_later");
  ASSERT_TRUE(eventually([&] { return machine.device("test_later") != 0; }));
  EXPECT_EQ(machine.defaultOutput(), session::sinkA);
  EXPECT_TRUE(eventually([&] {
    run({"pw-metadata", "0", "default.configured.audio.sink", "{\"name\":\"" + session::sinkB + "\"}",
         "Spa:String:JSON"});
    return machine.defaultOutput() == session::sinkB;
  })) << "its next word is taken";
}

TEST_F(Devices, WithoutADaemonEverythingIsEmptyAndOneThatComesIsFound) {
  session::control("stop", {"all"});
  Machine machine;
  EXPECT_TRUE(machine.list(audio::devices).empty());
  EXPECT_EQ(machine.number(systemObjectID, audio::defaultOutputDevice), 0U);
  session::control("start", {"all"});
  EXPECT_TRUE(eventually([&] { return machine.defaultOutput() == session::sinkA; }));
}

}  // namespace
}  // namespace quillmere::test
