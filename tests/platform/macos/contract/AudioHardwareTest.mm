// The contract of the audio port on Core Audio. No program can plug a device in: what is plugged here is an aggregate
// over the speakers, which has no volume and no jack. What a device plays can be measured where a loopback device,
// whose input is its output, stands for the speakers: QUILLMERE_TEST_LOOPBACK is its UID.
#include "platform/macos/MacAudioHardware.h"

#import <CoreAudio/CoreAudio.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "contract/Player.h"
#include "tests/platform/contract/AudioHardwareContract.h"

namespace quillmere {
namespace {

/// What the player plays.
constexpr float ownLevel = 0.5F;

/// The peak of what a device records, since the last question.
class Recorder {
 public:
  Recorder(AudioHardware& hardware, AudioObjectID device) : hardware_(hardware), device_(device) {
    const auto peak = peak_;
    const auto block = [peak](const AudioBufferList& input, const AudioBufferList& /*output*/) {
      float highest = 0.0F;
      for (const auto& buffer : input.buffers) {
        const auto count = buffer.data == nullptr ? 0 : buffer.byteCount / sizeof(float);
        for (std::size_t i = 0; i < count; ++i) highest = std::max(highest, std::fabs(buffer.data[i]));
      }
      peak->store(highest);
    };
    if (hardware_.createIOProc(device_, "contract-recorder", block, proc_) != noErr ||
        hardware_.startDevice(device_, proc_) != noErr) {
      throw std::runtime_error("the loopback device can't be recorded");
    }
  }
  ~Recorder() {
    hardware_.stopDevice(device_, proc_, 1.0F);
    hardware_.destroyIOProc(device_, proc_);
  }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  [[nodiscard]] float peak() const { return peak_->load(); }

 private:
  AudioHardware& hardware_;
  AudioObjectID device_;
  IOProcID proc_ = 0;
  std::shared_ptr<std::atomic<float>> peak_ = std::make_shared<std::atomic<float>>(0.0F);
};

class CoreAudioHost {
 public:
  CoreAudioHost() {
    before_ = defaultOutput();
    if (const char* const loopback = std::getenv("QUILLMERE_TEST_LOOPBACK")) {
      const auto device = deviceOf(loopback);
      if (device == 0) throw std::runtime_error("QUILLMERE_TEST_LOOPBACK names no device");
      hardware_.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, device);
      recorder_ = std::make_unique<Recorder>(hardware_, device);
    }
    speakers_ = text(defaultOutput(), audio::deviceUID);
    if (speakers_.empty()) throw std::runtime_error("this Mac has no default output");
  }
  ~CoreAudioHost() {
    players_.clear();
    recorder_.reset();
    hardware_.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, before_);
    for (const auto& [uid, device] : plugged_) hardware_.destroyAggregateDevice(device);
  }
  CoreAudioHost(const CoreAudioHost&) = delete;
  CoreAudioHost& operator=(const CoreAudioHost&) = delete;

  std::optional<std::string> whyNot(HostDeed deed) {
    switch (deed) {
      case HostDeed::plugHeadset:
        return "no program can plug a headset into a Mac";
      case HostDeed::moveVolumeOfPlugged:
        return "what a program can plug into a Mac has no volume";
      case HostDeed::restart:
        return "Core Audio is not restarted under the programs of a Mac";
      case HostDeed::measurePlugged:
        return "what a plugged device of a Mac plays can't be measured";
      case HostDeed::measureSpeakers:
        if (recorder_) return std::nullopt;
        return "QUILLMERE_TEST_LOOPBACK names no device whose input is its output";
    }
    return std::nullopt;
  }

  AudioHardware& hardware() { return hardware_; }
  /// One pass of the main queue.
  void run() { CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.0, 0); }
  bool eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (true) {
      run();
      if (condition()) return true;
      if (std::chrono::steady_clock::now() > deadline) return false;
      std::this_thread::yield();
    }
  }
  std::string speakers() { return speakers_; }
  /// The first device that has no output.
  std::string microphone() {
    for (const auto device : devices()) {
      std::uint32_t size = 0;
      hardware_.propertyDataSize(device, {audio::streams, audio::scopeOutput, 0}, size);
      if (size == 0) return text(device, audio::deviceUID);
    }
    throw std::runtime_error("this Mac has no device without an output");
  }
  void plug(const std::string& uid) {
    AggregateDescription description;
    description.name = uid;
    description.uid = uid;
    description.mainDeviceUID = speakers_;
    description.subDeviceUIDs = {speakers_};
    AudioObjectID device = 0;
    if (hardware_.createAggregateDevice(description, device) != noErr) throw std::runtime_error("no aggregate");
    plugged_[uid] = device;
  }
  void plugHeadset(const std::string& uid) { plug(uid); }
  void unplug(const std::string& uid) {
    hardware_.destroyAggregateDevice(plugged_.at(uid));
    plugged_.erase(uid);
  }
  void unplugForAGap(const std::string& uid) { unplug(uid); }
  void moveDefault(const std::string& uid) {
    hardware_.writeUInt32(systemObjectID, {audio::defaultOutputDevice}, deviceOf(uid));
  }
  void moveVolume(const std::string& uid, float position) {
    const auto device = deviceOf(uid);
    for (const std::uint32_t element : {0U, 1U, 2U}) {
      hardware_.writeFloat32(device, {audio::volumeScalar, audio::scopeOutput, element}, position);
    }
  }
  void restart() {}
  void launch(const std::string& identifier) {
    players_.insert_or_assign(identifier, std::make_unique<test::Player>(identifier));
  }
  void pause(const std::string& identifier) { players_.at(identifier)->say("pause"); }
  void resume(const std::string& identifier) { players_.at(identifier)->say("play"); }
  void quit(const std::string& identifier) { players_.erase(identifier); }
  float level(const std::string& uid) {
    return uid == speakers_ && recorder_ ? recorder_->peak() / ownLevel : std::nanf("");
  }

 private:
  std::vector<AudioObjectID> devices() {
    std::vector<AudioObjectID> ids;
    hardware_.readObjectIDs(systemObjectID, {audio::devices}, ids);
    return ids;
  }
  std::string text(AudioObjectID object, std::uint32_t selector) {
    std::optional<std::string> value;
    hardware_.readString(object, {selector}, value);
    return value.value_or("");
  }
  AudioObjectID deviceOf(const std::string& uid) {
    for (const auto device : devices()) {
      if (text(device, audio::deviceUID) == uid) return device;
    }
    return 0;
  }
  AudioObjectID defaultOutput() {
    std::uint32_t device = 0;
    hardware_.readUInt32(systemObjectID, {audio::defaultOutputDevice}, device);
    return device;
  }

  MacAudioHardware hardware_;
  AudioObjectID before_ = 0;
  std::string speakers_;
  std::unique_ptr<Recorder> recorder_;
  std::map<std::string, AudioObjectID> plugged_;
  std::map<std::string, std::unique_ptr<test::Player>> players_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(CoreAudio, AudioHardwareContract, CoreAudioHost);

}  // namespace
}  // namespace quillmere
