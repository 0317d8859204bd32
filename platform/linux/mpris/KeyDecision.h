// What a press of a media key is for the players there are: a call that stays right if it comes late.
// Pure: [any].
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Player.h"
#include "platform/MediaKeys.h"

namespace quillmere::mpris {

struct PlayerCall {
  std::string busName;
  /// Of org.mpris.MediaPlayer2.Player.
  const char* method;
};

/// Absent if nothing is to be done.
/// @param shown      bus name of the player whose track the program shows: a person's press is for that one; empty if
/// it
///                   shows none
/// @param pausedRun  the run of playing (`Player::lastPlayed`) that a press has ended and none has resumed; 0 if there
///                   is none; kept up to date
[[nodiscard]] std::optional<PlayerCall> decideKey(std::int32_t key, mediakey::Purpose purpose, const std::string& shown,
                                                  const Players& players, std::uint64_t& pausedRun);

}  // namespace quillmere::mpris
