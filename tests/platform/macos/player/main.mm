// An application that plays a steady tone on the default output until its input ends: "pause" and "play" are lines of
// it.
#import <CoreAudio/CoreAudio.h>
#import <Foundation/Foundation.h>

#include <atomic>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

/// Linear, of every sample.
constexpr float level = 0.5F;

int fail(const char* what, OSStatus status) {
  std::fprintf(stderr, "player: %s: %d\n", what, static_cast<int>(status));
  return 1;
}

}  // namespace

int main() {
  const AudioObjectPropertyAddress address{kAudioHardwarePropertyDefaultOutputDevice, kAudioObjectPropertyScopeGlobal,
                                           kAudioObjectPropertyElementMain};
  AudioObjectID device = 0;
  UInt32 size = sizeof(device);
  OSStatus status = AudioObjectGetPropertyData(kAudioObjectSystemObject, &address, 0, nullptr, &size, &device);
  if (status != noErr) return fail("no default output", status);

  AudioDeviceIOProcID proc = nullptr;
  __block bool isHigh = false;
  status = AudioDeviceCreateIOProcIDWithBlock(
      &proc, device, nil,
      ^(const AudioTimeStamp* _Nonnull /*now*/, const AudioBufferList* _Nonnull /*input*/,
        const AudioTimeStamp* _Nonnull /*inputTime*/, AudioBufferList* _Nonnull output,
        const AudioTimeStamp* _Nonnull /*outputTime*/) {
        const AudioBuffer* const buffers = output->mBuffers;
        for (UInt32 i = 0; i < output->mNumberBuffers; ++i) {
          auto* const samples = static_cast<float*>(buffers[i].mData);
          const auto count = buffers[i].mDataByteSize / sizeof(float);
          // A square: its peak is the same in every cycle, however short.
          for (std::size_t at = 0; at < count; ++at) samples[at] = isHigh ? level : -level;
        }
        isHigh = !isHigh;
      });
  if (status != noErr || proc == nullptr) return fail("no IO block", status);
  status = AudioDeviceStart(device, proc);
  if (status != noErr) return fail("no start", status);

  std::string line;
  while (std::getline(std::cin, line)) {
    if (line == "pause") AudioDeviceStop(device, proc);
    if (line == "play") AudioDeviceStart(device, proc);
  }
  AudioDeviceStop(device, proc);
  AudioDeviceDestroyIOProcID(device, proc);
  return 0;
}
