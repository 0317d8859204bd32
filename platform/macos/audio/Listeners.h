// The blocks behind property listeners. The system knows a listener by its block, the port by its pointer. Only for
// Objective-C++.
#pragma once

#import <CoreAudio/CoreAudio.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>

#include "platform/AudioHardware.h"

namespace quillmere::macos {

class Listeners {
 public:
  Listeners() = default;
  /// Takes away what is left. [main]
  ~Listeners();
  Listeners(const Listeners&) = delete;
  Listeners& operator=(const Listeners&) = delete;

  /// The block is called on the main queue. [any]
  Status add(AudioObjectID object, const PropertyAddress& address, PropertyListener listener);
  /// Once it has returned the listener is not called any more, even if its block waits in the main queue. [any]
  Status remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener);

 private:
  struct Added {
    AudioObjectPropertyListenerBlock _Nonnull block;
    std::shared_ptr<std::atomic<bool>> isWanted;
  };
  using Key = std::tuple<AudioObjectID, PropertyAddress, PropertyListener>;

  /// Never held while the system is asked.
  std::mutex mutex_;
  std::map<Key, Added> added_;
};

}  // namespace quillmere::macos
