// An in-memory audio object model: a test builds the devices and processes, watches taps and aggregates come and go,
// makes any single call fail, and plays the IO cycles itself.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioHardware.h"
#include "runtime/Clocks.h"
#include "runtime/Executor.h"

namespace quillmere {

struct MemoryVolumeElement {
  float value = 1.0F;
  bool settable = true;
  /// False: the property is there, but reading it fails.
  bool readable = true;
};

struct MemoryDevice {
  /// Absent: the read succeeds and gives no text.
  std::optional<std::string> uid;
  std::optional<std::string> name;
  /// 0 makes an input-only device.
  std::uint32_t outputStreamCount = 1;
  std::uint32_t transport = audio::transportBuiltIn;
  bool isAlive = true;
  /// By element: 0 is the main one, 1 and 2 the front channels.
  std::map<std::uint32_t, MemoryVolumeElement> volume = {};
};

struct MemoryProcess {
  /// Absent: the read succeeds and gives no text.
  std::optional<std::string> bundleID;
  std::int32_t pid = 0;
  bool isRunningOutput = false;
  bool isRunningInput = false;
};

/// [any]. Every call of the port is recorded before it answers.
class MemoryAudioHardware final : public AudioHardware {
 public:
  enum class Method {
    hasProperty,
    isPropertySettable,
    propertyDataSize,
    readUInt32,
    readInt32,
    readFloat32,
    readString,
    readObjectIDs,
    readFormat,
    writeUInt32,
    writeFloat32,
    addPropertyListener,
    removePropertyListener,
    createProcessTap,
    destroyProcessTap,
    createAggregateDevice,
    destroyAggregateDevice,
    createIOProc,
    destroyIOProc,
    startDevice,
    stopDevice,
  };

  struct Call {
    Method method = Method::hasProperty;
    /// The object called on; 0 for the create calls.
    AudioObjectID object = 0;
    /// All zero for calls without a property.
    PropertyAddress address{0, 0, 0};

    friend bool operator==(const Call&, const Call&) = default;
  };

  /// Which calls a failure is for. Absent fields fit any call.
  struct Match {
    Method method = Method::hasProperty;
    std::optional<AudioObjectID> object = {};
    std::optional<std::uint32_t> selector = {};
    std::optional<std::uint32_t> element = {};
  };

  static constexpr int always = -1;

  /// Listeners are called on `listenerExecutor`; `clocks` tells when a new aggregate becomes alive.
  MemoryAudioHardware(Executor& listenerExecutor, const Clocks& clocks);
  ~MemoryAudioHardware() override;

  // The port.
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

  // Devices. Changes of the list, the default and volumes are told to listeners, as if somebody else had made them.
  AudioObjectID addDevice(MemoryDevice device);
  /// The first device left that has outputs becomes the default if this one was it.
  void removeDevice(AudioObjectID device);
  /// Replaces a device's description; volumes that differ are told.
  void updateDevice(AudioObjectID device, MemoryDevice description);
  [[nodiscard]] std::optional<MemoryDevice> device(AudioObjectID device) const;
  /// 0 for none.
  void setDefaultOutput(AudioObjectID device);
  [[nodiscard]] AudioObjectID defaultOutput() const;
  void setVolume(AudioObjectID device, std::uint32_t element, float value);
  [[nodiscard]] std::optional<float> volume(AudioObjectID device, std::uint32_t element) const;
  /// True: a write of the default output succeeds and changes nothing.
  void setIgnoresDefaultWrites(bool ignores);

  // Processes.
  AudioObjectID addProcess(MemoryProcess process);
  void removeProcess(AudioObjectID process);
  void updateProcess(AudioObjectID process, MemoryProcess description);

  // Taps and aggregates.
  /// The format of taps created from now on; 48 kHz stereo at first.
  void setTapFormat(const AudioStreamBasicDescription& format);
  /// How long after its creation an aggregate says that it is alive; 0 at first. One whose device is gone never does.
  void setAggregateAliveDelay(Duration delay);
  [[nodiscard]] std::vector<AudioObjectID> taps() const;
  [[nodiscard]] std::vector<AudioObjectID> aggregates() const;
  /// What it was created with; stays known after it is destroyed.
  [[nodiscard]] std::optional<TapDescription> tapDescription(AudioObjectID tap) const;
  [[nodiscard]] std::optional<AggregateDescription> aggregateDescription(AudioObjectID device) const;
  /// The aggregate that holds the tap over the process, if there is one and it runs.
  [[nodiscard]] std::optional<AudioObjectID> runningAggregateOver(AudioObjectID process) const;
  [[nodiscard]] bool isRunning(AudioObjectID aggregate) const;
  /// Label of the queue the aggregate's block was installed for.
  [[nodiscard]] std::optional<std::string> ioQueueLabel(AudioObjectID aggregate) const;
  /// The gain told by the last stopDevice of this aggregate.
  [[nodiscard]] std::optional<float> appliedGain(AudioObjectID aggregate) const;
  /// Runs one IO cycle on the calling thread; false, with nothing called, if the aggregate does not run.
  bool runIOCycle(AudioObjectID aggregate, const AudioBufferList& input, const AudioBufferList& output);
  /// The installed block itself, for firing it when nobody should.
  [[nodiscard]] IOBlock ioBlock(AudioObjectID aggregate) const;

  // Scripts and records.
  /// Lets `count` calls that fit fail with `status`, after `skip` that still succeed. With noErr the call succeeds and
  /// gives nothing: results stay untouched, no object is made.
  void fail(Match match, Status status, int count = 1, int skip = 0);
  void clearFailures();
  [[nodiscard]] std::vector<Call> calls() const;
  /// Calls of one method, whatever the object.
  [[nodiscard]] int callCount(Method method) const;
  /// The methods of all recorded calls that create, destroy, start or stop something.
  [[nodiscard]] std::vector<Method> lifeCalls() const;
  void clearCalls();
  [[nodiscard]] std::size_t listenerCount(AudioObjectID object, const PropertyAddress& address) const;

 private:
  struct World;
  std::shared_ptr<World> world_;
};

/// For test messages. [any]
[[nodiscard]] const char* nameOf(MemoryAudioHardware::Method method);

}  // namespace quillmere
