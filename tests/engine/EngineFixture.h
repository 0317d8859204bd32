// What most engine tests stand on: a machine with one output device, virtual time, a log that remembers.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "engine/CoreAudioProcessMonitor.h"
#include "platform/memory/MemoryAudioHardware.h"
#include "platform/memory/RecordingLogSink.h"
#include "runtime/VirtualTime.h"

namespace quillmere {

using namespace std::chrono_literals;
using Method = MemoryAudioHardware::Method;
using Methods = std::vector<Method>;

inline std::ostream& operator<<(std::ostream& stream, Method method) { return stream << nameOf(method); }
inline void PrintTo(Method method, std::ostream* stream) { *stream << nameOf(method); }

inline constexpr const char* player = "org.example.Player";

inline const PropertyAddress defaultOutputAddress{audio::defaultOutputDevice, audio::scopeGlobal, 0};
inline const PropertyAddress deviceListAddress{audio::devices, audio::scopeGlobal, 0};

class EngineFixture : public testing::Test {
 protected:
  VirtualTime time;
  RecordingLogSink log;
  MemoryAudioHardware hardware{time.main(), time};
  AudioObjectID speakers = hardware.addDevice({.uid = "speakers", .name = "Speakers"});

  EngineFixture() {
    hardware.setDefaultOutput(speakers);
    time.runUntilIdle();
    hardware.clearCalls();
  }

  /// The only aggregate there is; 0 if there is none or more than one.
  AudioObjectID onlyAggregate() const {
    const auto aggregates = hardware.aggregates();
    return aggregates.size() == 1 ? aggregates.front() : 0;
  }
  AudioObjectID onlyTap() const {
    const auto taps = hardware.taps();
    return taps.size() == 1 ? taps.front() : 0;
  }

  /// One IO cycle of constant stereo samples through an aggregate; the first output sample, absent if it does not run.
  std::optional<float> playThrough(AudioObjectID aggregate, float sample, std::size_t frames = 64) {
    std::vector<float> input(2 * frames, sample);
    std::vector<float> output(2 * frames, 0.0F);
    const auto bytes = static_cast<std::uint32_t>(input.size() * sizeof(float));
    AudioBuffer in{2, bytes, input.data()};
    AudioBuffer out{2, bytes, output.data()};
    if (!hardware.runIOCycle(aggregate, {.buffers = {&in, 1}}, {.buffers = {&out, 1}})) return std::nullopt;
    return output.front();
  }
};

}  // namespace quillmere
