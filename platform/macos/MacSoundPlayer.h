// The system's sounds, by their names.
#pragma once

#include "platform/SoundPlayer.h"

namespace quillmere {

class MacSoundPlayer final : public SoundPlayer {
 public:
  bool play(std::string_view name) override;
};

}  // namespace quillmere
