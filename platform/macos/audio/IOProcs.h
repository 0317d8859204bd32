// The IO blocks that are installed, and the queue that each is called on. Only for Objective-C++.
#pragma once

#import <CoreAudio/CoreAudio.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/AudioHardware.h"

namespace quillmere::macos {

/// [any]
class IOProcs {
 public:
  Status create(AudioObjectID device, const std::string& queueLabel, IOBlock block, IOProcID& proc);
  Status destroy(AudioObjectID device, IOProcID proc);
  Status start(AudioObjectID device, IOProcID proc);
  /// Returns when no call of the block is under way; never on the block's own queue.
  Status stop(AudioObjectID device, IOProcID proc);

 private:
  struct Installed {
    AudioObjectID device;
    AudioDeviceIOProcID _Nonnull proc;
    dispatch_queue_t _Nonnull queue;
  };
  std::optional<Installed> find(AudioObjectID device, IOProcID proc);

  std::mutex mutex_;
  IOProcID last_ = 0;
  std::map<IOProcID, Installed> installed_;
};

}  // namespace quillmere::macos
