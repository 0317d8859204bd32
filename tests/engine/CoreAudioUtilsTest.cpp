// Reading and setting devices by UID, and waiting for one to come alive.
#include "engine/CoreAudioUtils.h"

#include <gmock/gmock.h>

#include "EngineFixture.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using Line = RecordingLogSink::Line;

struct CoreAudioUtilsTest : EngineFixture {
  AudioObjectID headphones = hardware.addDevice({.uid = "headphones", .name = "Headphones"});

  bool setDefault(const std::string& uid) { return CoreAudioUtils::setSystemDefaultOutput(hardware, log, uid); }
  void expectLine(LogLevel level, const std::string& message) {
    EXPECT_THAT(log.lines(), ElementsAre(Line{level, "app.quillmere.host", "CoreAudioUtils", message}));
  }
};

TEST_F(CoreAudioUtilsTest, TheFirstDeviceWithTheUIDWins) {
  hardware.addDevice({.uid = "headphones", .name = "Twin"});
  EXPECT_EQ(CoreAudioUtils::deviceID(hardware, "headphones"), headphones);
  EXPECT_EQ(CoreAudioUtils::deviceID(hardware, "none"), std::nullopt);
}

TEST_F(CoreAudioUtilsTest, ADeviceWhoseUIDCannotBeReadIsSkipped) {
  const auto twin = hardware.addDevice({.uid = "headphones", .name = "Twin"});
  hardware.fail({.method = Method::readString, .object = headphones}, unspecifiedError);
  EXPECT_EQ(CoreAudioUtils::deviceID(hardware, "headphones"), twin);
}

TEST_F(CoreAudioUtilsTest, InputOnlyDevicesAreFoundByUIDToo) {
  const auto microphone = hardware.addDevice({.uid = "mic", .name = "Microphone", .outputStreamCount = 0});
  EXPECT_EQ(CoreAudioUtils::deviceID(hardware, "mic"), microphone);
}

TEST_F(CoreAudioUtilsTest, WithoutAReadableListThereIsNoDevice) {
  hardware.fail({.method = Method::readObjectIDs}, unspecifiedError);
  EXPECT_EQ(CoreAudioUtils::deviceID(hardware, "headphones"), std::nullopt);
}

TEST_F(CoreAudioUtilsTest, TheDefaultOutputIsAbsentWhereItCannotBeReadOrIsNone) {
  EXPECT_EQ(CoreAudioUtils::systemDefaultOutputDeviceID(hardware), speakers);
  hardware.fail({.method = Method::readUInt32}, unspecifiedError);
  EXPECT_EQ(CoreAudioUtils::systemDefaultOutputDeviceID(hardware), std::nullopt);
  hardware.setDefaultOutput(0);
  EXPECT_EQ(CoreAudioUtils::systemDefaultOutputDeviceID(hardware), std::nullopt);
}

TEST_F(CoreAudioUtilsTest, ATextIsAbsentForAFailedReadAndForANullReference) {
  EXPECT_EQ(CoreAudioUtils::readString(hardware, speakers, audio::deviceUID), "speakers");
  const auto object = hardware.addDevice({.uid = "x", .name = std::nullopt});
  EXPECT_EQ(CoreAudioUtils::readString(hardware, object, audio::objectName), std::nullopt);
  EXPECT_EQ(CoreAudioUtils::readString(hardware, 9999, audio::deviceUID), std::nullopt);
}

TEST_F(CoreAudioUtilsTest, SettingTheDefaultIsReadBack) {
  EXPECT_TRUE(setDefault("headphones"));
  EXPECT_EQ(hardware.defaultOutput(), headphones);
  expectLine(LogLevel::info, "setSystemDefaultOutput: requested headphones, system now reports headphones");
}

TEST_F(CoreAudioUtilsTest, SettingAnUnknownDeviceWritesNothing) {
  EXPECT_FALSE(setDefault("none"));
  EXPECT_EQ(hardware.callCount(Method::writeUInt32), 0);
  expectLine(LogLevel::error, "setSystemDefaultOutput: no AudioObjectID for UID none");
}

TEST_F(CoreAudioUtilsTest, AFailedWriteIsAFailure) {
  hardware.fail({.method = Method::writeUInt32}, -50);
  EXPECT_FALSE(setDefault("headphones"));
  expectLine(LogLevel::error, "setSystemDefaultOutput failed (-50) for UID headphones");
}

TEST_F(CoreAudioUtilsTest, AReadBackOfAnotherDeviceIsAFailureAlthoughTheWriteSucceeded) {
  hardware.setDefaultWrites(DefaultWrites::ignored);
  EXPECT_FALSE(setDefault("headphones"));
  expectLine(LogLevel::info, "setSystemDefaultOutput: requested headphones, system now reports speakers");
}

TEST_F(CoreAudioUtilsTest, AnUnavailableReadBackCountsAsSuccess) {
  hardware.fail({.method = Method::readUInt32}, unspecifiedError);
  EXPECT_TRUE(setDefault("headphones"));
  expectLine(LogLevel::info, "setSystemDefaultOutput: set headphones (read-back unavailable)");
  log.clear();
  // The UID of the second device is read while it is looked for, and once more when it is read back.
  hardware.fail({.method = Method::readString, .object = headphones}, unspecifiedError, 1, 1);
  EXPECT_TRUE(setDefault("headphones"));
  expectLine(LogLevel::info, "setSystemDefaultOutput: set headphones (read-back unavailable)");
}

TEST_F(CoreAudioUtilsTest, ADeviceIsAliveWhenItSaysSo) {
  EXPECT_TRUE(CoreAudioUtils::isAlive(hardware, speakers));
  hardware.updateDevice(speakers, {.uid = "speakers", .name = "Speakers", .isAlive = false});
  EXPECT_FALSE(CoreAudioUtils::isAlive(hardware, speakers));
}

TEST_F(CoreAudioUtilsTest, ADeviceThatCannotBeAskedIsNotAlive) {
  hardware.fail({.method = Method::readUInt32}, unspecifiedError);
  EXPECT_FALSE(CoreAudioUtils::isAlive(hardware, speakers));
  EXPECT_FALSE(CoreAudioUtils::isAlive(hardware, 4711));
}

}  // namespace
}  // namespace quillmere
