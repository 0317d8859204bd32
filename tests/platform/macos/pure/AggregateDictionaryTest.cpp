#include "platform/macos/pure/AggregateDictionary.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmere::macos {
namespace {

using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;

AggregateDescription described() {
  AggregateDescription description;
  description.name = "quillmere-com.spotify.client";
  description.uid = "app.quillmere.aggregate.68753A44-4D6F-1226-9C60-0050E4C00067";
  description.mainDeviceUID = "BuiltInSpeakerDevice";
  description.isPrivate = true;
  description.isStacked = false;
  description.tapAutoStart = true;
  description.subDeviceUIDs = {"BuiltInSpeakerDevice"};
  description.taps = {{.uid = "68753A44-4D6F-1226-9C60-0050E4C00067", .driftCompensation = true}};
  return description;
}

TEST(AggregateDictionary, HasTheseKeysAndNoOthers) {
  const Dictionary expected{
      {"name", "quillmere-com.spotify.client"},
      {"uid", "app.quillmere.aggregate.68753A44-4D6F-1226-9C60-0050E4C00067"},
      {"master", "BuiltInSpeakerDevice"},
      {"private", true},
      {"stacked", false},
      {"tapautostart", true},
      {"subdevices", List{Dictionary{{"uid", "BuiltInSpeakerDevice"}}}},
      {"taps", List{Dictionary{{"drift", true}, {"uid", "68753A44-4D6F-1226-9C60-0050E4C00067"}}}},
  };
  EXPECT_EQ(aggregateDictionary(described()), expected);
}

TEST(AggregateDictionary, SaysWhatTheDescriptionSaysAndNotWhatIsUsual) {
  auto description = described();
  description.isPrivate = false;
  description.isStacked = true;
  description.tapAutoStart = false;
  description.taps[0].driftCompensation = false;
  const auto dictionary = aggregateDictionary(description);
  EXPECT_EQ(dictionary.at("private"), PropertyList(false));
  EXPECT_EQ(dictionary.at("stacked"), PropertyList(true));
  EXPECT_EQ(dictionary.at("tapautostart"), PropertyList(false));
  EXPECT_EQ(dictionary.at("taps"),
            PropertyList(List{Dictionary{{"drift", false}, {"uid", "68753A44-4D6F-1226-9C60-0050E4C00067"}}}));
}

TEST(AggregateDictionary, KeepsTheOrderOfSubDevicesAndTaps) {
  auto description = described();
  description.subDeviceUIDs = {"b", "a"};
  description.taps = {{"2", true}, {"1", false}};
  const auto dictionary = aggregateDictionary(description);
  EXPECT_EQ(dictionary.at("subdevices"), PropertyList(List{Dictionary{{"uid", "b"}}, Dictionary{{"uid", "a"}}}));
  EXPECT_EQ(dictionary.at("taps"),
            PropertyList(List{Dictionary{{"drift", true}, {"uid", "2"}}, Dictionary{{"drift", false}, {"uid", "1"}}}));
}

TEST(AggregateDictionary, TellsNothingOfWhatOnlyOtherHostsDo) {
  auto description = described();
  const auto without = aggregateDictionary(description);
  description.followsDefaultOutput = true;
  description.targetGain = std::make_shared<const std::atomic<float>>(0.5F);
  EXPECT_EQ(aggregateDictionary(description), without);
}

}  // namespace
}  // namespace quillmere::macos
