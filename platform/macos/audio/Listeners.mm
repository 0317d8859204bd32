#include "audio/Listeners.h"

#include <optional>
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
  Key key{object, address, listener};
  {
    const std::lock_guard lock(mutex_);
    if (added_.contains(key)) return noErr;
  }
  const auto isWanted = std::make_shared<std::atomic<bool>>(true);
  const auto block = ^(UInt32 /*count*/, const AudioObjectPropertyAddress* _Nonnull /*addresses*/) {
    if (isWanted->load()) (*listener)();
  };
  const auto where = addressOf(address);
  const OSStatus status = AudioObjectAddPropertyListenerBlock(object, &where, dispatch_get_main_queue(), block);
  if (status != noErr) return status;
  const std::lock_guard lock(mutex_);
  added_.emplace(std::move(key), Added{block, isWanted});
  return noErr;
}

Status Listeners::remove(AudioObjectID object, const PropertyAddress& address, const PropertyListener& listener) {
  const auto where = addressOf(address);
  std::optional<Added> removed;
  {
    const std::lock_guard lock(mutex_);
    if (const auto found = added_.find({object, address, listener}); found != added_.end()) {
      removed = std::move(found->second);
      added_.erase(found);
    }
  }
  if (!removed) {
    // The system is asked all the same, and what it says of a block that it doesn't know is of no interest.
    const auto stranger = ^(UInt32 /*count*/, const AudioObjectPropertyAddress* _Nonnull /*addresses*/) {
    };
    AudioObjectRemovePropertyListenerBlock(object, &where, dispatch_get_main_queue(), stranger);
    return noErr;
  }
  removed->isWanted->store(false);
  return AudioObjectRemovePropertyListenerBlock(object, &where, dispatch_get_main_queue(), removed->block);
}

}  // namespace quillmere::macos
