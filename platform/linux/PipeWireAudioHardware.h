// The audio object model answered by PipeWire: devices, one process object an application, taps and IO blocks.
// Everything is read from a snapshot that the daemon's events keep; see docs/pipewire.md.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/AudioHardware.h"
#include "platform/linux/ClientFacts.h"
#include "runtime/Clocks.h"
#include "runtime/Executor.h"
#include "runtime/Logger.h"

namespace quillmere {

namespace pipewire {
class Host;
}

struct PipeWireOptions {
  /// Name of the daemon's socket; empty means the session's own.
  std::string remote;
  /// How long the constructor waits for the first full picture of the machine.
  Duration firstSnapshotTimeout = std::chrono::milliseconds(300);
};

/// An application that has, or has had, audio streams.
struct AudioClient {
  std::string identifier;
  /// Of its first client; 0 where unknown.
  std::int32_t pid = 0;
  std::string displayName;
  /// False: it has only recorded so far.
  bool hasPlayed = true;

  friend bool operator==(const AudioClient&, const AudioClient&) = default;
};

/// [any] unless told otherwise, as the port is; no call on [loop], where the daemon is talked with.
class PipeWireAudioHardware final : public AudioHardware {
 public:
  /// `main` and `log` must outlive the object. Without a daemon everything is empty until one comes. [main]
  PipeWireAudioHardware(Executor& main, LogSink& log, ApplicationIdentifier identify = defaultApplicationIdentifier,
                        PipeWireOptions options = {});
  /// Gives every application its own output back, without a glide. [main]
  ~PipeWireAudioHardware() override;
  PipeWireAudioHardware(const PipeWireAudioHardware&) = delete;
  PipeWireAudioHardware& operator=(const PipeWireAudioHardware&) = delete;

  /// The applications behind the process objects, in the order in which they appeared. [any]
  [[nodiscard]] std::vector<AudioClient> audioClients() const;

  [[nodiscard]] const ChangeSignal& changes() const override;
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
  std::unique_ptr<pipewire::Host> host_;
};

}  // namespace quillmere
