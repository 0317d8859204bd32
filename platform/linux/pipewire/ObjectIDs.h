// Ids of audio objects: one for each key, for the life of the program, never given twice.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/AudioTypes.h"

namespace quillmere::pipewire {

/// [loop] throughout.
class ObjectIDs {
 public:
  /// The id of this key, made on first use.
  AudioObjectID of(const std::string& key) {
    const auto [found, isNew] = byKey_.try_emplace(key, next_);
    if (isNew) keys_.emplace(next_++, key);
    return found->second;
  }
  /// An id without a key.
  AudioObjectID fresh() { return next_++; }
  [[nodiscard]] std::optional<std::string> keyOf(AudioObjectID id) const {
    const auto found = keys_.find(id);
    if (found == keys_.end()) return std::nullopt;
    return found->second;
  }

 private:
  AudioObjectID next_ = 64;
  std::map<std::string, AudioObjectID> byKey_;
  std::map<AudioObjectID, std::string> keys_;
};

}  // namespace quillmere::pipewire
