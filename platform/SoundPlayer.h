// Short named sounds: "Glass" and "Hero".
#pragma once

#include <string_view>

namespace quillmere {

class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  /// Plays a sound by name and returns at once; false if there is no such sound. [main]
  virtual bool play(std::string_view name) = 0;
};

}  // namespace quillmere
