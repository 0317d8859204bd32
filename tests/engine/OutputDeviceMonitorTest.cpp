// The list of output devices: who is on it, under which name, in which order.
#include "engine/OutputDeviceMonitor.h"

#include <gmock/gmock.h>

#include <unordered_set>

#include "EngineFixture.h"

namespace quillmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct OutputDeviceMonitorTest : EngineFixture {
  std::vector<AudioOutputDevice> devices() const { return OutputDeviceMonitor::outputDevices(hardware); }
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& device : devices()) all.push_back(device.name);
    return all;
  }
};

TEST_F(OutputDeviceMonitorTest, TheDefaultDeviceComesFirstWhateverItsNameThenNamesIgnoringCase) {
  hardware.addDevice({.uid = "1", .name = "beta"});
  hardware.addDevice({.uid = "2", .name = "Alpha"});
  EXPECT_THAT(names(), ElementsAre("Speakers", "Alpha", "beta"));
  EXPECT_TRUE(devices()[0].isDefault);
  EXPECT_FALSE(devices()[1].isDefault);
}

TEST_F(OutputDeviceMonitorTest, EqualNamesKeepTheSystemsOrder) {
  const auto first = hardware.addDevice({.uid = "1", .name = "same"});
  const auto second = hardware.addDevice({.uid = "2", .name = "Same"});
  EXPECT_EQ(devices()[1].id, first);
  EXPECT_EQ(devices()[2].id, second);
}

TEST_F(OutputDeviceMonitorTest, ADeviceWhoseNameCannotBeReadIsListedUnderItsUID) {
  const auto unreadable = hardware.addDevice({.uid = "usb-1", .name = "USB"});
  hardware.addDevice({.uid = "usb-2", .name = std::nullopt});
  hardware.fail({.method = Method::readString, .object = unreadable, .selector = audio::objectName}, unspecifiedError);
  EXPECT_THAT(names(), ElementsAre("Speakers", "usb-1", "usb-2"));
}

TEST_F(OutputDeviceMonitorTest, ADeviceWithoutOutputStreamsIsNotListed) {
  hardware.addDevice({.uid = "mic", .name = "Microphone", .outputStreamCount = 0});
  EXPECT_THAT(names(), ElementsAre("Speakers"));
}

TEST_F(OutputDeviceMonitorTest, ADeviceWhoseStreamsOrUIDCannotBeReadIsSkipped) {
  const auto a = hardware.addDevice({.uid = "a", .name = "A"});
  const auto b = hardware.addDevice({.uid = "b", .name = "B"});
  hardware.addDevice({.uid = std::nullopt, .name = "C"});
  hardware.fail({.method = Method::propertyDataSize, .object = a}, unspecifiedError);
  hardware.fail({.method = Method::readString, .object = b, .selector = audio::deviceUID}, unspecifiedError);
  EXPECT_THAT(names(), ElementsAre("Speakers"));
}

TEST_F(OutputDeviceMonitorTest, WithoutAReadableDefaultNoDeviceIsTheDefault) {
  hardware.fail({.method = Method::readUInt32, .object = systemObjectID}, unspecifiedError);
  const auto list = devices();
  ASSERT_EQ(list.size(), 1U);
  EXPECT_FALSE(list[0].isDefault);
}

TEST_F(OutputDeviceMonitorTest, AListThatCannotBeReadIsEmpty) {
  hardware.fail({.method = Method::propertyDataSize, .object = systemObjectID}, unspecifiedError);
  EXPECT_THAT(devices(), IsEmpty());
  hardware.fail({.method = Method::readObjectIDs}, unspecifiedError);
  EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(OutputDeviceMonitorTest, NamesOfAnyKindArePassedOn) {
  const std::string name = "\"Kitchen\"\n" + std::string(4096, 'x');
  hardware.addDevice({.uid = name, .name = name});
  EXPECT_THAT(names(), testing::Contains(name));
}

TEST_F(OutputDeviceMonitorTest, TheStreamTellsTheListAtOnceAndEveryThreeSeconds) {
  const OutputDeviceMonitor monitor(hardware, time.background());
  auto stream = monitor.stream();
  std::vector<std::size_t> sizes;
  startTask(time.main(), [&](TaskContext&) -> Async<void> {
    while (auto list = co_await stream.next()) sizes.push_back(list->size());
  });
  time.runUntilIdle();
  EXPECT_THAT(sizes, ElementsAre(1));
  hardware.addDevice({.uid = "b", .name = "B"});
  time.advance(2999ms);
  EXPECT_EQ(sizes.size(), 1U);
  time.advance(1ms);
  EXPECT_THAT(sizes, ElementsAre(1, 2));
}

TEST_F(OutputDeviceMonitorTest, AStreamThatIsLetGoPollsNoMore) {
  {
    const OutputDeviceMonitor monitor(hardware, time.background());
    const auto stream = monitor.stream();
    time.advance(10s);
  }
  time.advance(3s);
  hardware.clearCalls();
  time.advance(1min);
  EXPECT_THAT(hardware.calls(), IsEmpty());
}

TEST(AudioOutputDevice, EqualsAndHashesByAllFields) {
  const AudioOutputDevice base{"u", "n", 1, true};
  std::unordered_set<AudioOutputDevice> set{base, base};
  for (const auto& other : {AudioOutputDevice{"v", "n", 1, true}, AudioOutputDevice{"u", "m", 1, true},
                            AudioOutputDevice{"u", "n", 2, true}, AudioOutputDevice{"u", "n", 1, false}}) {
    EXPECT_NE(base, other);
    set.insert(other);
  }
  EXPECT_EQ(set.size(), 5U);
}

}  // namespace
}  // namespace quillmere
