// Value types of the audio object model: ids, property addresses, buffer lists, formats, descriptions.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/Uuid.h"
#include "platform/Status.h"

namespace quillmere {

/// Numeric identity of a device, process, tap or aggregate. Never reused within one run of the program. 0 means none.
using AudioObjectID = std::uint32_t;

inline constexpr AudioObjectID systemObjectID = 1;

struct PropertyAddress {
  std::uint32_t selector = 0;
  std::uint32_t scope = fourCC("glob");
  std::uint32_t element = 0;

  friend auto operator<=>(const PropertyAddress&, const PropertyAddress&) = default;
};

namespace audio {

inline constexpr std::uint32_t scopeGlobal = fourCC("glob");
inline constexpr std::uint32_t scopeOutput = fourCC("outp");

// Of the system object.
inline constexpr std::uint32_t devices = fourCC("dev#");
inline constexpr std::uint32_t defaultOutputDevice = fourCC("dOut");
/// The device that was written as the default output last and was not taken; 0 if it was, or is still to be answered. A
/// host on which a write is answered before it returns has no such property.
inline constexpr std::uint32_t refusedDefaultOutput = fourCC("dRef");
inline constexpr std::uint32_t processObjectList = fourCC("prs#");
// Of a device.
inline constexpr std::uint32_t deviceUID = fourCC("uid ");
inline constexpr std::uint32_t objectName = fourCC("lnam");
inline constexpr std::uint32_t streams = fourCC("stm#");
inline constexpr std::uint32_t deviceIsAlive = fourCC("livn");
inline constexpr std::uint32_t volumeScalar = fourCC("volm");
inline constexpr std::uint32_t transportType = fourCC("tran");
// Of an audio process object.
inline constexpr std::uint32_t processBundleID = fourCC("pbid");
inline constexpr std::uint32_t processPID = fourCC("ppid");
inline constexpr std::uint32_t processIsRunningOutput = fourCC("piro");
inline constexpr std::uint32_t processIsRunningInput = fourCC("piri");
// Of a tap.
inline constexpr std::uint32_t tapFormat = fourCC("tfmt");

// Transport types.
inline constexpr std::uint32_t transportBuiltIn = fourCC("bltn");
inline constexpr std::uint32_t transportPCI = fourCC("pci ");
inline constexpr std::uint32_t transportBluetooth = fourCC("blue");
inline constexpr std::uint32_t transportBluetoothLE = fourCC("blea");
inline constexpr std::uint32_t transportUSB = fourCC("usb ");
inline constexpr std::uint32_t transportFireWire = fourCC("1394");
inline constexpr std::uint32_t transportAirPlay = fourCC("airp");
inline constexpr std::uint32_t transportHDMI = fourCC("hdmi");
inline constexpr std::uint32_t transportVirtual = fourCC("virt");

}  // namespace audio

/// The stream format of a tap. Samples are 32-bit floats.
struct AudioStreamBasicDescription {
  double sampleRate = 0.0;
  std::uint32_t formatID = 0;
  std::uint32_t formatFlags = 0;
  std::uint32_t bytesPerPacket = 0;
  std::uint32_t framesPerPacket = 0;
  std::uint32_t bytesPerFrame = 0;
  std::uint32_t channelsPerFrame = 0;
  std::uint32_t bitsPerChannel = 0;
};

/// Interleaved 32-bit float samples. `data` may be null.
struct AudioBuffer {
  std::uint32_t channelCount = 0;
  std::uint32_t byteCount = 0;
  float* data = nullptr;
};

/// The buffers of one direction in one IO cycle. Borrowed: valid for the length of the callback only.
struct AudioBufferList {
  std::span<AudioBuffer> buffers;
};

enum class MuteBehavior : std::int32_t { unmuted = 0, muted = 1, mutedWhenTapped = 2 };

/// A tap over process objects, mixed down to stereo.
struct TapDescription {
  std::vector<AudioObjectID> processes;
  Uuid uuid;
  MuteBehavior muteBehavior = MuteBehavior::unmuted;
  bool isPrivate = false;
  /// True: `processes` names those to leave out; false: those to include.
  bool isExclusive = true;
};

struct AggregateTap {
  std::string uid;
  bool driftCompensation = false;
};

/// A device made of one real output device and a tap.
struct AggregateDescription {
  std::string name;
  std::string uid;
  /// UID of the sub-device that is the clock.
  std::string mainDeviceUID;
  bool isPrivate = false;
  bool isStacked = false;
  bool tapAutoStart = false;
  std::vector<std::string> subDeviceUIDs;
  std::vector<AggregateTap> taps;
  /// True when the output is the default of the moment and not a choice of the user's: a host whose graph can follow
  /// the default by itself does so. A host that cannot ignores it and is rebuilt by the engine.
  bool followsDefaultOutput = false;
  /// The linear gain, 0 to 1, that the IO block glides to. A host where streams of one application may play on several
  /// outputs at once applies it to those that the block, which has one caller at a time, doesn't see. A host that
  /// mixes them all into the tap ignores it. May be null.
  std::shared_ptr<const std::atomic<float>> targetGain;
};

/// One IO cycle: reads `input`, writes `output`. [audio]
using IOBlock = std::function<void(const AudioBufferList& input, const AudioBufferList& output)>;

/// Names an installed IO block; 0 means none.
using IOProcID = std::uint64_t;

}  // namespace quillmere
