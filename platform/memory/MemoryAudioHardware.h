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

/// An IO cycle that an application has driven.
struct MemoryCycle {
  AudioObjectID process = 0;
  AudioObjectID aggregate = 0;
  MonotonicTime at;
};

struct MemoryProcess {
  /// Absent: the read succeeds and gives no text.
  std::optional<std::string> bundleID;
  std::int32_t pid = 0;
  bool isRunningOutput = false;
  bool isRunningInput = false;
};

/// What becomes of a write of the default output.
enum class DefaultWrites {
  /// The system has the device at once.
  taken,
  /// The write succeeds and changes nothing.
  ignored,
  /// It counts, and the system answers when the test says so.
  awaited,
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

  /// False: the host can't tell that anything has changed, so that everybody has to ask.
  void setTellsChanges(bool tells);

  // The port.
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

  // Devices. Changes of the list, the default and volumes are told to listeners, as if somebody else had made them.
  AudioObjectID addDevice(MemoryDevice device);
  /// The first device left that has outputs becomes the default if this one was it, unless a gap is left.
  void removeDevice(AudioObjectID device);
  /// True: where the default goes no other takes its place until setDefaultOutput(); it is still the default, not
  /// listed, not alive, and tells what it was.
  void setLeavesGaps(bool leaves);
  /// Replaces a device's description; volumes that differ are told.
  void updateDevice(AudioObjectID device, MemoryDevice description);
  [[nodiscard]] std::optional<MemoryDevice> device(AudioObjectID device) const;
  /// 0 for none.
  void setDefaultOutput(AudioObjectID device);
  /// What reads tell.
  [[nodiscard]] AudioObjectID defaultOutput() const;
  void setVolume(AudioObjectID device, std::uint32_t element, float value);
  [[nodiscard]] std::optional<float> volume(AudioObjectID device, std::uint32_t element) const;
  void setDefaultWrites(DefaultWrites answer);
  /// The system answers the write that is awaited; without one nothing happens.
  void answerDefaultWrite(bool takes);

  // Processes.
  AudioObjectID addProcess(MemoryProcess process);
  void removeProcess(AudioObjectID process);
  void updateProcess(AudioObjectID process, MemoryProcess description);

  // Taps and aggregates.
  /// The format of taps created from now on; 48 kHz stereo at first.
  void setTapFormat(const AudioStreamBasicDescription& format);
  /// The same of those that are there, as where the device goes to another rate; their listeners are told.
  void changeTapFormat(const AudioStreamBasicDescription& format);
  /// How long after its creation an aggregate says that it is alive; 0 at first. One that plays nowhere never does.
  void setAggregateAliveDelay(Duration delay);
  /// True: as on a graph, what follows the default plays there wherever it goes, and what misses its device plays on
  /// the default until the device is there. False, at first: both play on their main device or nowhere.
  void setOutputsFall(bool fall);
  /// The device that an aggregate plays on; 0 for none.
  [[nodiscard]] AudioObjectID outputOf(AudioObjectID aggregate) const;
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
  /// From now on sounding applications drive the IO, as they do in a sound server whose cycles stop with them: every
  /// `length` the running blocks over processes that run output get a cycle of constant stereo samples, on the
  /// listeners' executor. The others get none.
  void setCycles(Duration length, float sample);
  /// The cycles that were driven since the last call, in their order.
  [[nodiscard]] std::vector<MemoryCycle> takeCycles();
  /// When the aggregate's block was stopped; absent while it runs, and where it never has.
  [[nodiscard]] std::optional<MonotonicTime> stoppedAt(AudioObjectID aggregate) const;
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
  /// Additions that no removal has taken away, of one listener or of several.
  [[nodiscard]] std::size_t listenerCount(AudioObjectID object, const PropertyAddress& address) const;
  /// Different listeners on all properties.
  [[nodiscard]] std::size_t differentListenerCount() const;

 private:
  struct World;
  std::shared_ptr<World> world_;
};

/// For test messages. [any]
[[nodiscard]] const char* nameOf(MemoryAudioHardware::Method method);

}  // namespace quillmere
