// The description of an aggregate device in the words of the system's audio library.
#pragma once

#include "platform/AudioTypes.h"
#include "platform/macos/pure/PropertyList.h"

namespace quillmere::macos {

/// The keys of the dictionary. MacAudioHardware.mm holds each against the system's own when it is compiled.
namespace aggregate {
inline constexpr const char* name = "name";
inline constexpr const char* uid = "uid";
/// The sub-device that is the clock.
inline constexpr const char* mainSubDevice = "master";
inline constexpr const char* isPrivate = "private";
inline constexpr const char* isStacked = "stacked";
inline constexpr const char* tapAutoStart = "tapautostart";
inline constexpr const char* subDevices = "subdevices";
inline constexpr const char* taps = "taps";
// Of an entry of `subDevices`.
inline constexpr const char* subDeviceUID = "uid";
// Of an entry of `taps`.
inline constexpr const char* tapUID = "uid";
inline constexpr const char* tapDriftCompensation = "drift";
}  // namespace aggregate

/// What createAggregateDevice hands to the system. A sub-device has no key but its UID: drift is made up for at the tap
/// alone. [any]
PropertyList::Dictionary aggregateDictionary(const AggregateDescription& description);

}  // namespace quillmere::macos
