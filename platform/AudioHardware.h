// The audio object model: objects with properties, listeners, process taps, aggregate devices and IO blocks.
// Property reads answer from what is known and never wait for an audio daemon.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioTypes.h"
#include "runtime/ChangeSignal.h"

namespace quillmere {

/// A property listener. Its identity is the pointer: removing takes the one that was added.
using PropertyListener = std::shared_ptr<const std::function<void()>>;

/// All methods [any] unless stated; calls that create, start or stop are made on [engine], one at a time, and never
/// wait for a device to come alive. Any number of aggregates may be on their way there at once, each with a tap of its
/// own. A read that fails returns a code other than noErr and leaves its result untouched.
///
/// The default output. One that is written counts for every read as soon as the write has returned, and its listeners
/// are told once the system has answered: with the device written, or with what stands instead, and then those of
/// audio::refusedDefaultOutput too. A moment without a default is not told: until the next one is known, or there is
/// none for good, the last one is still named and tells what it was, listed or not, and that it is not alive.
class AudioHardware {
 public:
  virtual ~AudioHardware() = default;

  /// Raised after a read of the system object, of a device or of a process object has another answer than before (a
  /// failure that passes is one), and when the IO cycles of a tap begin. Of a host that doesn't know: absent.
  [[nodiscard]] virtual const ChangeSignal& changes() const { return ChangeSignal::absent(); }

  [[nodiscard]] virtual bool hasProperty(AudioObjectID object, const PropertyAddress& address) const = 0;
  virtual Status isPropertySettable(AudioObjectID object, const PropertyAddress& address, bool& settable) const = 0;
  /// Size of the value in bytes; lists of ids count 4 bytes an entry.
  virtual Status propertyDataSize(AudioObjectID object, const PropertyAddress& address,
                                  std::uint32_t& byteCount) const = 0;

  virtual Status readUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t& value) const = 0;
  virtual Status readInt32(AudioObjectID object, const PropertyAddress& address, std::int32_t& value) const = 0;
  virtual Status readFloat32(AudioObjectID object, const PropertyAddress& address, float& value) const = 0;
  /// A successful read may still give no string (a null reference).
  virtual Status readString(AudioObjectID object, const PropertyAddress& address,
                            std::optional<std::string>& value) const = 0;
  virtual Status readObjectIDs(AudioObjectID object, const PropertyAddress& address,
                               std::vector<AudioObjectID>& value) const = 0;
  virtual Status readFormat(AudioObjectID object, const PropertyAddress& address,
                            AudioStreamBasicDescription& value) const = 0;

  virtual Status writeUInt32(AudioObjectID object, const PropertyAddress& address, std::uint32_t value) = 0;
  virtual Status writeFloat32(AudioObjectID object, const PropertyAddress& address, float value) = 0;

  /// The listener is called on [main] after a change; several changes may be told once. One that is added again for the
  /// same property stays one listener, which a host may call once or once for each addition.
  virtual Status addPropertyListener(AudioObjectID object, const PropertyAddress& address,
                                     PropertyListener listener) = 0;
  /// Takes the listener away, however often it was added. Removing one that was never added does nothing.
  virtual Status removePropertyListener(AudioObjectID object, const PropertyAddress& address,
                                        const PropertyListener& listener) = 0;

  virtual Status createProcessTap(const TapDescription& description, AudioObjectID& tap) = 0;
  virtual Status destroyProcessTap(AudioObjectID tap) = 0;

  /// The device tells by deviceIsAlive when a block may be installed and started; until then it may be destroyed like
  /// any other.
  virtual Status createAggregateDevice(const AggregateDescription& description, AudioObjectID& device) = 0;
  virtual Status destroyAggregateDevice(AudioObjectID device) = 0;

  /// Registers a block with the device. The block runs on [audio] between startDevice and stopDevice.
  virtual Status createIOProc(AudioObjectID device, const std::string& queueLabel, IOBlock block, IOProcID& proc) = 0;
  virtual Status destroyIOProc(AudioObjectID device, IOProcID proc) = 0;
  virtual Status startDevice(AudioObjectID device, IOProcID proc) = 0;
  /// No call of the block follows the return. `appliedGain` is the linear gain the block used last, 0 to 1: a host that
  /// gives the sound back gradually starts from there.
  virtual Status stopDevice(AudioObjectID device, IOProcID proc, float appliedGain) = 0;
};

}  // namespace quillmere
