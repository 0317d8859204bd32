// The audio object model answered by Core Audio: each function is a call of it with the port's arguments.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/AudioHardware.h"

namespace quillmere {

/// [any] unless the port tells otherwise. Core Audio answers a read or a write before it returns, so there is no
/// audio::refusedDefaultOutput here; an aggregate's followsDefaultOutput and targetGain are for other hosts.
class MacAudioHardware final : public AudioHardware {
 public:
  MacAudioHardware();
  /// Takes the listeners away; taps and aggregates that are left end with the process. [main]
  ~MacAudioHardware() override;
  MacAudioHardware(const MacAudioHardware&) = delete;
  MacAudioHardware& operator=(const MacAudioHardware&) = delete;

  [[nodiscard]] bool hasProperty(AudioObjectID object, const PropertyAddress& address) const override;
  Status isPropertySettable(AudioObjectID object, const PropertyAddress& address, bool& settable) const override;
  Status propertyDataSize(AudioObjectID object, const PropertyAddress& address,
                          std::uint32_t& byteCount) const override;
  Status readUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t& value) const override;
  Status readInt32(AudioObjectID object, const PropertyAddress& address, std::int32_t& value) const override;
  Status readFloat32(AudioObjectID object, const PropertyAddress& address, float& value) const override;
  Status readString(AudioObjectID object, const PropertyAddress& address,
                    std::optional<std::string>& value) const override;
  Status readObjectIDs(AudioObjectID object, const PropertyAddress& address,
                       std::vector<AudioObjectID>& value) const override;
  Status readFormat(AudioObjectID object, const PropertyAddress& address,
                    AudioStreamBasicDescription& value) const override;
  Status writeUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t value) override;
  Status writeFloat32(AudioObjectID object, const PropertyAddress& address, float value) override;
  Status addPropertyListener(AudioObjectID object, const PropertyAddress& address, PropertyListener listener) override;
  Status removePropertyListener(AudioObjectID object, const PropertyAddress& address,
                                const PropertyListener& listener) override;
  Status createProcessTap(const TapDescription& description, AudioObjectID& tap) override;
  Status destroyProcessTap(AudioObjectID tap) override;
  Status createAggregateDevice(const AggregateDescription& description, AudioObjectID& device) override;
  Status destroyAggregateDevice(AudioObjectID device) override;
  Status createIOProc(AudioObjectID device, const std::string& queueLabel, IOBlock block, IOProcID& proc) override;
  Status destroyIOProc(AudioObjectID device, IOProcID proc) override;
  Status startDevice(AudioObjectID device, IOProcID proc) override;
  Status stopDevice(AudioObjectID device, IOProcID proc, float appliedGain) override;

 private:
  class Listeners;
  class IOProcs;
  std::unique_ptr<Listeners> listeners_;
  std::unique_ptr<IOProcs> procs_;
};

}  // namespace quillmere
