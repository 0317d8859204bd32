// Scales, metadata texts, transport types and identities: pure functions at the edge of the audio host.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/AudioTypes.h"
#include "platform/linux/pipewire/ClientIdentity.h"
#include "platform/linux/pipewire/CubicScale.h"
#include "platform/linux/pipewire/MetadataValue.h"
#include "platform/linux/pipewire/Properties.h"
#include "platform/linux/pipewire/TransportType.h"

namespace quillmere::pipewire::test {
namespace {

TEST(CubicScale, HalfTheSliderIsAnEighthLinear) {
  EXPECT_FLOAT_EQ(linearFromScalar(0.5F), 0.125F);
  EXPECT_FLOAT_EQ(scalarFromLinear(0.125F), 0.5F);
}

TEST(CubicScale, ValuesOutsideAreLimitedAndNaNIsSilence) {
  EXPECT_EQ(linearFromScalar(7.0F), 1.0F);
  EXPECT_EQ(linearFromScalar(-1.0F), 0.0F);
  EXPECT_EQ(linearFromScalar(std::numeric_limits<float>::quiet_NaN()), 0.0F);
  EXPECT_EQ(scalarFromLinear(3.4F), 1.0F);
  EXPECT_EQ(scalarFromLinear(-0.1F), 0.0F);
  EXPECT_EQ(scalarFromLinear(std::numeric_limits<float>::quiet_NaN()), 0.0F);
}

TEST(CubicScale, ANewVolumeKeepsTheBalance) {
  const std::vector<float> before{0.5F, 0.25F};
  EXPECT_EQ(withLoudest(before, 1.0F), (std::vector<float>{1.0F, 0.5F}));
}

TEST(CubicScale, OutOfSilenceAllChannelsBecomeEqual) {
  const std::vector<float> before{0.0F, 0.0F};
  EXPECT_EQ(withLoudest(before, 0.125F), (std::vector<float>{0.125F, 0.125F}));
}

TEST(MetadataValue, NameIsReadFromItsObject) { EXPECT_EQ(nameFromMetadata(R"({ "name": "sink" })"), "sink"); }

TEST(MetadataValue, AnythingElseIsAbsent) {
  for (const auto* text :
       {"", "{", "null", "[]", "\"sink\"", "{}", R"({"name": 7})", R"({"name": null})", "{\"name\":"}) {
    EXPECT_EQ(nameFromMetadata(text), std::nullopt) << text;
  }
}

TEST(MetadataValue, QuotesBackslashesAndLongNamesSurvive) {
  for (const auto& name : {std::string(R"(a "quoted" \ sink)"), std::string(4096, 'x'), std::string("größe\n")}) {
    EXPECT_EQ(nameFromMetadata(metadataFromName(name)), name);
  }
}

TEST(MetadataValue, BrokenUTF8IsReplacedAndNotThrown) {
  EXPECT_NE(metadataFromName("\xff\xfe").find("name"), std::string::npos);
}

TEST(Properties, NumbersAreWholeOrAbsent) {
  const Properties properties{
      {"good", "42"}, {"signed", "-1"}, {"tail", "42x"}, {"huge", "99999999999"}, {"empty", ""}};
  EXPECT_EQ(number(properties, "good"), 42U);
  for (const auto* key : {"signed", "tail", "huge", "empty", "missing"})
    EXPECT_EQ(number(properties, key), std::nullopt);
}

struct TransportCase {
  const char* name;
  Properties node;
  Properties device;
  std::uint32_t expected;
};

class TransportType : public ::testing::TestWithParam<TransportCase> {};

TEST_P(TransportType, IsToldByBusAndApi) {
  EXPECT_EQ(transportTypeOf(GetParam().node, GetParam().device), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, TransportType,
    ::testing::Values(
        TransportCase{"USB", {{"device.api", "alsa"}}, {{"device.bus", "usb"}}, audio::transportUSB},
        TransportCase{
            "Bluetooth", {{"api.bluez5.profile", "a2dp-sink"}}, {{"device.api", "bluez5"}}, audio::transportBluetooth},
        TransportCase{
            "LowEnergy", {{"api.bluez5.profile", "bap-sink"}}, {{"device.api", "bluez5"}}, audio::transportBluetoothLE},
        TransportCase{"WidebandHeadset",
                      {{"api.bluez5.profile", "headset-head-unit"}, {"api.bluez5.codec", "lc3_swb"}},
                      {{"device.api", "bluez5"}},
                      audio::transportBluetooth},
        TransportCase{"FireWire", {}, {{"device.bus", "firewire"}}, audio::transportFireWire},
        TransportCase{"AirPlay", {{"node.name", "raop_sink.living-room"}}, {}, audio::transportAirPlay},
        TransportCase{"HDMI",
                      {{"device.profile.name", "hdmi-stereo"}},
                      {{"device.bus", "pci"}, {"device.api", "alsa"}},
                      audio::transportHDMI},
        TransportCase{
            "Internal", {{"device.profile.name", "analog-stereo"}}, {{"device.bus", "pci"}}, audio::transportBuiltIn},
        TransportCase{"SoundCardWithAnotherOutput",
                      {{"device.profile.name", "iec958-stereo"}},
                      {{"device.bus", "pci"}, {"device.form-factor", "computer"}},
                      audio::transportPCI},
        TransportCase{"Virtual", {{"node.name", "null"}}, {}, audio::transportVirtual}),
    [](const auto& tested) { return tested.param.name; });

TEST(ClientIdentity, TheKernelsPidIsTrusted) {
  std::string problem;
  const auto facts = factsOf({{"pipewire.sec.pid", "77"}, {"application.process.id", "5"}}, {}, problem);
  EXPECT_EQ(facts.pid, 77);
  EXPECT_TRUE(facts.pidIsTrusted);
  EXPECT_EQ(problem, "");
}

TEST(ClientIdentity, AClientOfThePulseServerHasOnlyItsOwnWord) {
  std::string problem;
  const auto facts = factsOf(
      {{"client.api", "pipewire-pulse"}, {"pipewire.sec.pid", "77"}, {"application.process.id", "5"}}, {}, problem);
  EXPECT_EQ(facts.pid, 5);
  EXPECT_FALSE(facts.pidIsTrusted);
}

TEST(ClientIdentity, AbsurdProcessIdsAreZeroWithAWordAboutIt) {
  for (const auto* digits : {"-7", "99999999999", "12a", "0", " 5"}) {
    std::string problem;
    const auto facts = factsOf({{"pipewire.sec.pid", digits}}, {}, problem);
    EXPECT_EQ(facts.pid, 0);
    EXPECT_FALSE(facts.pidIsTrusted);
    EXPECT_NE(problem.find(digits), std::string::npos);
  }
}

TEST(ClientIdentity, WhatTheClientDoesNotSayItsStreamMay) {
  std::string problem;
  const auto facts =
      factsOf({}, {{"application.name", "Player"}, {"media.role", "Music"}, {"node.name", "p"}}, problem);
  EXPECT_EQ(facts.applicationName, "Player");
  EXPECT_EQ(facts.mediaRole, "Music");
}

TEST(ClientIdentity, ThePortalsIdComesFirstThenIdBinaryNameAndNode) {
  ClientFacts facts;
  EXPECT_EQ(defaultApplicationIdentifier(facts), "");
  facts.nodeName = "node";
  EXPECT_EQ(defaultApplicationIdentifier(facts), "node");
  facts.applicationName = "name";
  EXPECT_EQ(defaultApplicationIdentifier(facts), "name");
  facts.processBinary = "binary";
  EXPECT_EQ(defaultApplicationIdentifier(facts), "binary");
  facts.applicationID = "id";
  EXPECT_EQ(defaultApplicationIdentifier(facts), "id");
  facts.portalAppID = "portal";
  EXPECT_EQ(defaultApplicationIdentifier(facts), "portal");
}

TEST(ClientIdentity, ANameThatSaysNothingIsReplacedByTheBinarys) {
  ClientFacts facts;
  facts.applicationName = "playback";
  facts.processBinary = "mpv";
  EXPECT_EQ(clientDisplayName(facts), "mpv");
  facts.applicationName = "ALSA plug-in [aplay]";
  EXPECT_EQ(clientDisplayName(facts), "aplay");
  facts.applicationName = "Music";
  EXPECT_EQ(clientDisplayName(facts), "Music");
}

}  // namespace
}  // namespace quillmere::pipewire::test
