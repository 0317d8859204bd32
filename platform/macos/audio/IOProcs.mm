#include "audio/IOProcs.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace quillmere::macos {

namespace {

/// The buffers of one direction in the port's form. No heap: it is made anew in each cycle. [audio]
class Buffers {
 public:
  explicit Buffers(const ::AudioBufferList& list)
      : count_(std::min<std::size_t>(list.mNumberBuffers, buffers_.size())) {
    // The list goes on behind the end of its declaration.
    const ::AudioBuffer* const theirs = list.mBuffers;
    for (std::size_t i = 0; i < count_; ++i) {
      buffers_[i] = {theirs[i].mNumberChannels, theirs[i].mDataByteSize, static_cast<float*>(theirs[i].mData)};
    }
  }
  [[nodiscard]] AudioBufferList list() { return {.buffers = std::span(buffers_).first(count_)}; }

 private:
  /// More than any block looks at: a tap is one stream.
  std::array<AudioBuffer, 8> buffers_{};
  std::size_t count_;
};

dispatch_queue_t _Nonnull ioQueue(const std::string& label) {
  const auto quality = dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INTERACTIVE, 0);
  return dispatch_queue_create(label.c_str(), dispatch_queue_attr_make_with_autorelease_frequency(
                                                  quality, DISPATCH_AUTORELEASE_FREQUENCY_INHERIT));
}

}  // namespace

Status IOProcs::create(AudioObjectID device, const std::string& queueLabel, IOBlock block, IOProcID& proc) {
  if (!block) return kAudioHardwareIllegalOperationError;
  @autoreleasepool {
    const dispatch_queue_t queue = ioQueue(queueLabel);
    AudioDeviceIOProcID made = nullptr;
    const OSStatus status = AudioDeviceCreateIOProcIDWithBlock(
        &made, device, queue,
        ^(const AudioTimeStamp* _Nonnull /*now*/, const ::AudioBufferList* _Nonnull input,
          const AudioTimeStamp* _Nonnull /*inputTime*/, ::AudioBufferList* _Nonnull output,
          const AudioTimeStamp* _Nonnull /*outputTime*/) {
          Buffers in(*input);
          Buffers out(*output);
          block(in.list(), out.list());
        });
    if (status != noErr || made == nullptr) return status;
    const std::lock_guard lock(mutex_);
    proc = ++last_;
    installed_.emplace(proc, Installed{device, made, queue});
    return noErr;
  }
}

Status IOProcs::destroy(AudioObjectID device, IOProcID proc) {
  const auto installed = find(device, proc);
  if (!installed) return kAudioHardwareBadObjectError;
  {
    const std::lock_guard lock(mutex_);
    installed_.erase(proc);
  }
  return AudioDeviceDestroyIOProcID(device, installed->proc);
}

Status IOProcs::start(AudioObjectID device, IOProcID proc) {
  const auto installed = find(device, proc);
  return installed ? AudioDeviceStart(device, installed->proc) : kAudioHardwareBadObjectError;
}

Status IOProcs::stop(AudioObjectID device, IOProcID proc) {
  const auto installed = find(device, proc);
  if (!installed) return kAudioHardwareBadObjectError;
  const OSStatus status = AudioDeviceStop(device, installed->proc);
  // A call that has begun ends before this runs.
  dispatch_sync(installed->queue, ^{
                });
  return status;
}

std::optional<IOProcs::Installed> IOProcs::find(AudioObjectID device, IOProcID proc) {
  const std::lock_guard lock(mutex_);
  const auto found = installed_.find(proc);
  if (found == installed_.end() || found->second.device != device) return std::nullopt;
  return found->second;
}

}  // namespace quillmere::macos
