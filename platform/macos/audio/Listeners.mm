#include "audio/Listeners.h"

#include <utility>

#include "audio/Address.h"

namespace quillmere::macos {

Listeners::~Listeners() {
  for (const auto& [key, added] : added_) {
    const auto where = addressOf(std::get<PropertyAddress>(key));
    added.isWanted->store(false);
    AudioObjectRemovePropertyListenerBlock(std::get<AudioObjectID>(key), &where, dispatch_get_main_queue(),
                                           added.block);
  }
}

Status Listeners::add(AudioObjectID object, const PropertyAddress& address, PropertyListener listener) {
  // Held while the system is asked: it calls a listener from the main queue, and never from within this call.
  const std::lock_guard lock(mutex_);
  Key key{object, address, listener};
  if (added_.contains(key)) return noErr;
  const auto isWanted = std::make_shared<std::atomic<bool>>(true);
  const auto block = ^(UInt32 /*count*/, const AudioObjectPropertyAddress* _Nonnull /*addresses*/) {
    if (isWanted->load()) (*listener)();
  };
  const auto where = addressOf(address);
  const OSStatus status = AudioObjectAddPropertyListenerBlock(object, &where, dispatch_get_main_queue(), block);
  if (status == noErr) added_.emplace(std::move(key), Added{block, isWanted});
  return status;
}

Status Listeners::remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener) {
  const auto where = addressOf(address);
  const std::lock_guard lock(mutex_);
  const auto found = added_.find({object, address, listener});
  if (found == added_.end()) {
    // The system is asked all the same, and what it says of a block that it doesn't know is of no interest.
    AudioObjectRemovePropertyListenerBlock(
        object, &where, dispatch_get_main_queue(),
        ^(UInt32 /*count*/, const AudioObjectPropertyAddress* _Nonnull /*addresses*/){
        });
    return noErr;
  }
  found->second.isWanted->store(false);
  const OSStatus status =
      AudioObjectRemovePropertyListenerBlock(object, &where, dispatch_get_main_queue(), found->second.block);
  added_.erase(found);
  return status;
}

}  // namespace quillmere::macos
