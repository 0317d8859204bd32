// Which of a tap's outputs goes to which port of a device.
#include <gtest/gtest.h>

#include "platform/linux/pipewire/TapLinks.h"

namespace quillmere::pipewire::test {
namespace {

PortRecord input(GlobalID id, std::uint32_t index, std::string channel) {
  return {.id = id,
          .serial = std::to_string(1000 + id),
          .node = 1,
          .index = index,
          .isInput = true,
          .channel = std::move(channel)};
}
PortRecord output(GlobalID id, std::uint32_t index, std::string channel) {
  return {.id = id, .serial = std::to_string(1000 + id), .node = 2, .index = index, .channel = std::move(channel)};
}

const std::vector<PortRecord> tap{output(52, 2, "MONO"), output(51, 1, "FR"), output(50, 0, "FL"), input(40, 0, "FL"),
                                  input(41, 1, "FR")};
using Pairs = std::vector<PortPair>;

TEST(OutputLinks, StereoGoesToStereo) {
  const std::vector device{input(10, 0, "FL"), input(11, 1, "FR")};
  EXPECT_EQ(outputLinks(tap, device), (Pairs{{50, 10}, {51, 11}}));
}

TEST(OutputLinks, ADevicesChannelsCountAndNotTheirOrder) {
  const std::vector device{input(10, 1, "FL"), input(11, 0, "FR")};
  EXPECT_EQ(outputLinks(tap, device), (Pairs{{50, 10}, {51, 11}}));
}

TEST(OutputLinks, OfSurroundOnlyTheFrontPlays) {
  const std::vector device{input(10, 0, "LFE"), input(11, 1, "FC"), input(12, 2, "FL"),
                           input(13, 3, "FR"),  input(14, 4, "RL"), input(15, 5, "RR")};
  EXPECT_EQ(outputLinks(tap, device), (Pairs{{50, 12}, {51, 13}}));
}

TEST(OutputLinks, ADeviceOfOneChannelGetsBothSidesInOne) {
  EXPECT_EQ(outputLinks(tap, std::vector{input(10, 0, "MONO")}), (Pairs{{52, 10}}));
  EXPECT_EQ(outputLinks(tap, std::vector{input(10, 0, "")}), (Pairs{{52, 10}}));
}

TEST(OutputLinks, WithoutFrontChannelsTheFirstTwoPlay) {
  const std::vector device{input(12, 2, "AUX2"), input(11, 1, "AUX1"), input(10, 0, "AUX0")};
  EXPECT_EQ(outputLinks(tap, device), (Pairs{{50, 10}, {51, 11}}));
}

TEST(OutputLinks, MonitorsAndControlsAreNoPlacesToPlay) {
  auto control = input(9, 0, "");
  control.isControl = true;
  auto monitor = input(8, 1, "FL");
  monitor.isMonitor = true;
  const std::vector device{control, monitor, output(20, 0, "FL"), input(10, 2, "FL"), input(11, 3, "FR")};
  EXPECT_EQ(outputLinks(tap, device), (Pairs{{50, 10}, {51, 11}}));
}

TEST(OutputLinks, NothingIsLinkedBeforeBothSidesAreKnown) {
  const std::vector device{input(10, 0, "FL"), input(11, 1, "FR")};
  EXPECT_TRUE(outputLinks({}, device).empty());
  EXPECT_TRUE(outputLinks(tap, {}).empty());
  EXPECT_TRUE(outputLinks(std::vector{output(50, 0, "FL")}, device).empty());
  EXPECT_TRUE(
      outputLinks(std::vector{output(50, 0, "FL"), output(51, 1, "FR")}, std::vector{input(10, 0, "MONO")}).empty())
      << "the output for it is still to come";
}

}  // namespace
}  // namespace quillmere::pipewire::test
