// Media keys as calls of the media players' own methods.
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
  void press(std::int32_t key, mediakey::Purpose purpose) override;

 private:
  std::shared_ptr<mpris::PlayerWatcher> players_;
};

}  // namespace quillmere
