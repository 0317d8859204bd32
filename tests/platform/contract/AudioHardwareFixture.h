// What the contract of the audio port needs: a host, an IO block that knows when it must not be called, short names.
//
// A host is one machine with output devices, one input and applications, and what others do with them:
//   AudioHardware& hardware();
//   void run();                              lets listeners that are due be called; they are called nowhere else
//   bool eventually(condition);              waits, and runs what is due meanwhile; the last answer
//   std::string speakers();                  UID of an output that is there from the start, and is the default
//   std::string microphone();                UID of an input that is there from the start
//   void plug(uid); void plugHeadset(uid);   an output with a volume for the whole and for two channels
//   void unplug(uid);
//   void unplugForAGap(uid);                 the default, a headset: nothing takes its place until moveDefault()
//   void moveDefault(uid);                   by another program
//   void moveVolume(uid, position);          by another program, 0 to 1
//   void restart();                          whatever can go and come back behind the port does
//   void launch(identifier);                 an application that plays a steady tone
//   void pause(identifier); void resume(identifier); void quit(identifier);
//   float level(uid);                        of what the device plays: 1 is one application as it is
// One that can't arrange something of this says so, and the tests that need it are skipped with its reason:
//   optional<string> whyNot(HostDeed);       absent where it can; a host that can do everything has no such function
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/AudioHardware.h"

namespace quillmere {

/// What a host may be unable to arrange.
enum class HostDeed {
  plugHeadset,
  /// What is plugged has volumes.
  moveVolumeOfPlugged,
  restart,
  /// The level of the default output.
  measureSpeakers,
  /// The level of a device that was plugged.
  measurePlugged,
};

#define CONTRACT_NEEDS(deed) \
  if (const auto why = this->whyNot(HostDeed::deed)) GTEST_SKIP() << *why

inline constexpr PropertyAddress contractVolume{audio::volumeScalar, audio::scopeOutput, 0};

/// An IO block that applies a gain, and knows when it must not be called.
class BlockUnderContract {
 public:
  [[nodiscard]] IOBlock block() const {
    return [state = state_](const AudioBufferList& input, const AudioBufferList& output) {
      state->isInside = true;
      if (!state->mayBeCalled) state->wasCalledWrongly = true;
      const auto& in = input.buffers[0];
      const auto& out = output.buffers[0];
      const float gain = state->gain;
      const auto samples = std::min(in.byteCount, out.byteCount) / sizeof(float);
      for (std::size_t i = 0; i < samples; ++i) out.data[i] = gain * in.data[i];
      const auto end = std::chrono::steady_clock::now() + state->length.load();
      while (std::chrono::steady_clock::now() < end) continue;
      state->formsAreRight = state->formsAreRight && in.channelCount == 2 && out.channelCount == 2;
      ++state->calls;
      state->isInside = false;
    };
  }
  void setGain(float gain) { state_->gain = gain; }
  /// Every call takes at least so long.
  void setLength(std::chrono::microseconds length) { state_->length = length; }
  void allow() { state_->mayBeCalled = true; }
  /// Said when a call that ends the IO has returned: from here on any call is wrong, and so is one still under way.
  void forbid() {
    state_->mayBeCalled = false;
    if (state_->isInside) state_->wasCalledWrongly = true;
  }
  [[nodiscard]] std::uint64_t calls() const { return state_->calls; }
  [[nodiscard]] bool isInside() const { return state_->isInside; }
  [[nodiscard]] bool wasCalledWrongly() const { return state_->wasCalledWrongly; }
  [[nodiscard]] bool formsAreRight() const { return state_->formsAreRight; }

 private:
  struct State {
    std::atomic<float> gain{1.0F};
    std::atomic<std::chrono::microseconds> length{};
    std::atomic<bool> mayBeCalled{false};
    std::atomic<bool> isInside{false};
    std::atomic<bool> wasCalledWrongly{false};
    std::atomic<bool> formsAreRight{true};
    std::atomic<std::uint64_t> calls{0};
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

/// A listener that counts.
struct CountedListener {
  int told = 0;
  PropertyListener listener = std::make_shared<const std::function<void()>>([this] { ++told; });
};

template <typename Host>
class AudioHardwareContract : public ::testing::Test {
 protected:
  static constexpr AudioObjectID nobody = 4'000'000'000;
  static constexpr const char* app = "org.example.contract";

  AudioHardware& hardware() { return host_.hardware(); }
  std::optional<std::string> whyNot(HostDeed deed) {
    if constexpr (requires { host_.whyNot(deed); }) {
      return host_.whyNot(deed);
    } else {
      return std::nullopt;
    }
  }

  std::vector<AudioObjectID> list(std::uint32_t selector) {
    std::vector<AudioObjectID> ids;
    EXPECT_EQ(hardware().readObjectIDs(systemObjectID, {selector}, ids), noErr);
    return ids;
  }
  std::string text(AudioObjectID object, std::uint32_t selector) {
    std::optional<std::string> value;
    hardware().readString(object, {selector}, value);
    return value.value_or("");
  }
  /// Absent where it cannot be read.
  std::optional<std::uint32_t> number(AudioObjectID object, std::uint32_t selector) {
    std::uint32_t value = 0;
    if (hardware().readUInt32(object, {selector}, value) != noErr) return std::nullopt;
    return value;
  }
  std::optional<float> volume(AudioObjectID object, std::uint32_t element = 0) {
    float value = 0.0F;
    if (hardware().readFloat32(object, {audio::volumeScalar, audio::scopeOutput, element}, value) != noErr) {
      return std::nullopt;
    }
    return value;
  }
  Status setVolume(AudioObjectID object, float value, std::uint32_t element = 0) {
    return hardware().writeFloat32(object, {audio::volumeScalar, audio::scopeOutput, element}, value);
  }
  /// 0 where there is none.
  AudioObjectID device(const std::string& uid) {
    for (const auto id : list(audio::devices)) {
      if (text(id, audio::deviceUID) == uid) return id;
    }
    return 0;
  }
  AudioObjectID process(const std::string& identifier) {
    for (const auto id : list(audio::processObjectList)) {
      if (text(id, audio::processBundleID) == identifier) return id;
    }
    return 0;
  }
  AudioObjectID defaultOutput() { return number(systemObjectID, audio::defaultOutputDevice).value_or(0); }
  Status setDefaultOutput(AudioObjectID id) {
    return hardware().writeUInt32(systemObjectID, {audio::defaultOutputDevice}, id);
  }
  bool eventually(const std::function<bool()>& condition) { return host_.eventually(condition); }

  /// Plugs an output in and waits until it is listed.
  AudioObjectID plug(const std::string& uid) {
    host_.plug(uid);
    EXPECT_TRUE(eventually([&] { return device(uid) != 0; }));
    return device(uid);
  }
  AudioObjectID plugHeadset(const std::string& uid) {
    host_.plugHeadset(uid);
    EXPECT_TRUE(eventually([&] { return device(uid) != 0; }));
    return device(uid);
  }
  AudioObjectID launch(const std::string& identifier) {
    host_.launch(identifier);
    EXPECT_TRUE(eventually([&] { return isRunning(identifier, audio::processIsRunningOutput); }));
    return process(identifier);
  }
  bool isRunning(const std::string& identifier, std::uint32_t selector) {
    const auto found = process(identifier);
    return found != 0 && number(found, selector) == 1U;
  }
  void listen(AudioObjectID object, const PropertyAddress& address, const CountedListener& counted) {
    EXPECT_EQ(hardware().addPropertyListener(object, address, counted.listener), noErr);
  }
  bool levelIs(const std::string& uid, float expected) {
    return eventually([&] { return std::fabs(host_.level(uid) - expected) < 0.01F; });
  }

  // A tap as the engine builds it, step by step.

  TapDescription tapOver(AudioObjectID processObject) {
    TapDescription description;
    description.processes = {processObject};
    description.uuid = Uuid::random();
    description.muteBehavior = MuteBehavior::mutedWhenTapped;
    description.isPrivate = true;
    description.isExclusive = false;
    return description;
  }
  AggregateDescription aggregateOf(const TapDescription& tap, const std::string& uid, bool followsDefault) {
    AggregateDescription description;
    description.name = "contract";
    description.uid = "contract." + tap.uuid.text();
    description.mainDeviceUID = uid;
    description.isPrivate = true;
    description.tapAutoStart = true;
    description.subDeviceUIDs = {uid};
    description.taps = {{tap.uuid.text(), true}};
    description.followsDefaultOutput = followsDefault;
    return description;
  }
  struct Path {
    AudioObjectID tap = 0;
    AudioObjectID device = 0;
    IOProcID proc = 0;
    BlockUnderContract block;
  };
  /// Everything but the start. Plays on the default, or on the device of `route`.
  Path build(AudioObjectID processObject, float gain, const std::string& route = {}) {
    Path path;
    path.block.setGain(gain);
    const auto description = tapOver(processObject);
    EXPECT_EQ(hardware().createProcessTap(description, path.tap), noErr);
    const auto uid = route.empty() ? text(defaultOutput(), audio::deviceUID) : route;
    EXPECT_EQ(hardware().createAggregateDevice(aggregateOf(description, uid, route.empty()), path.device), noErr);
    EXPECT_TRUE(eventually([&] { return number(path.device, audio::deviceIsAlive) == 1U; }));
    EXPECT_EQ(hardware().createIOProc(path.device, "contract", path.block.block(), path.proc), noErr);
    EXPECT_NE(path.tap, 0U);
    EXPECT_NE(path.device, 0U);
    EXPECT_NE(path.proc, 0U);
    return path;
  }
  void start(Path& path) {
    path.block.allow();
    EXPECT_EQ(hardware().startDevice(path.device, path.proc), noErr);
  }
  void stop(Path& path) {
    EXPECT_EQ(hardware().stopDevice(path.device, path.proc, 1.0F), noErr);
    path.block.forbid();
  }
  void destroy(const Path& path) {
    EXPECT_EQ(hardware().destroyIOProc(path.device, path.proc), noErr);
    EXPECT_EQ(hardware().destroyAggregateDevice(path.device), noErr);
    EXPECT_EQ(hardware().destroyProcessTap(path.tap), noErr);
  }
  /// One of the four steps of the tear-down. What the end of one thing has taken along is no longer there.
  void tearDown(Path& path, int step) {
    if (step == 0) hardware().stopDevice(path.device, path.proc, 1.0F);
    if (step == 1) hardware().destroyIOProc(path.device, path.proc);
    if (step == 2) {
      EXPECT_EQ(hardware().destroyAggregateDevice(path.device), noErr);
    }
    if (step == 3) {
      EXPECT_EQ(hardware().destroyProcessTap(path.tap), noErr);
      return;
    }
    path.block.forbid();
  }
  bool isCalled(const Path& path) {
    const auto before = path.block.calls();
    return eventually([&] { return path.block.calls() > before + 1; });
  }

  Host host_;
};

}  // namespace quillmere
