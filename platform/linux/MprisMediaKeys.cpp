// Media keys as calls of the media players.
#include "platform/linux/MprisMediaKeys.h"

#include <utility>

#include "mpris/PlayerWatcher.h"

namespace quillmere {

MprisMediaKeys::MprisMediaKeys(std::shared_ptr<mpris::PlayerWatcher> players) : players_(std::move(players)) {}

void MprisMediaKeys::press(std::int32_t key, mediakey::Purpose purpose) { players_->press(key, purpose); }

}  // namespace quillmere
