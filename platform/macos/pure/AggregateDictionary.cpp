#include "platform/macos/pure/AggregateDictionary.h"

namespace quillmere::macos {

PropertyList::Dictionary aggregateDictionary(const AggregateDescription& description) {
  PropertyList::List subDevices;
  for (const auto& uid : description.subDeviceUIDs) {
    subDevices.emplace_back(PropertyList::Dictionary{{aggregate::subDeviceUID, uid}});
  }
  PropertyList::List taps;
  for (const auto& tap : description.taps) {
    taps.emplace_back(PropertyList::Dictionary{{aggregate::tapUID, tap.uid},
                                               {aggregate::tapDriftCompensation, tap.driftCompensation}});
  }
  return {
      {aggregate::name, description.name},
      {aggregate::uid, description.uid},
      {aggregate::mainSubDevice, description.mainDeviceUID},
      {aggregate::isPrivate, description.isPrivate},
      {aggregate::isStacked, description.isStacked},
      {aggregate::tapAutoStart, description.tapAutoStart},
      {aggregate::subDevices, std::move(subDevices)},
      {aggregate::taps, std::move(taps)},
  };
}

}  // namespace quillmere::macos
