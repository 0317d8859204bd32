// Media keys as calls of the media players' own methods.
//
// The play key is a toggle, but the program presses it for something: to pause the track that it was told plays, or to
// resume the one that it was told does not. So a press becomes an explicit Pause or Play after what the now-playing
// source told last, and a pause that somebody else has made in between stays a pause.
#pragma once

#include <memory>

#include "platform/MediaKeys.h"

namespace quillmere {

namespace mpris {
class PlayerWatcher;
}

/// [main]
class MprisMediaKeys final : public MediaKeys {
 public:
  explicit MprisMediaKeys(std::shared_ptr<mpris::PlayerWatcher> players);
  void press(std::int32_t key) override;

 private:
  std::shared_ptr<mpris::PlayerWatcher> players_;
};

}  // namespace quillmere
